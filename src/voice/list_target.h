// Where an operation puts the entries of a list: a list control of a dialog, the console's output or a test.
#pragma once

#include <string>

namespace bv {

class ListTarget {
  public:
    virtual ~ListTarget() = default;

    virtual void Clear() = 0;
    virtual void Add(const std::string& entry) = 0;

    // Whether an entry equals the text without regard to case.
    [[nodiscard]] virtual bool Contains(const std::string& entry) const = 0;

    // Columns are parted by a tab in a list box and by "  -  " in a combo box.
    [[nodiscard]] virtual bool IsComboBox() const = 0;
};

} // namespace bv
