// The entries of a catalogue as rows of a list.
#pragma once

#include "covlet/catalogue.h"
#include "dialogs/list_view_dlg.h"

namespace bv {

inline constexpr ListColumn kItemColumns[] = {{"Name", 62}, {"Description", 180}};

class ItemRows : public RowModel {
  public:
    // False, without rows, after ReadCatalogue's message.
    bool Read(ItemKind kind) {
        const std::optional<CatalogueEntries> read = ReadCatalogue(kind);
        entries_ = read.value_or(CatalogueEntries());
        isRead_ = read.has_value();
        return isRead_;
    }
    // No rows, as of a catalogue that cannot be read; false.
    bool Clear() {
        entries_.clear();
        return isRead_ = false;
    }

    [[nodiscard]] bool IsRead() const { return isRead_; }
    [[nodiscard]] const CatalogueEntry& At(std::size_t row) const { return entries_.at(row); }
    [[nodiscard]] std::size_t Count() const override { return entries_.size(); }
    [[nodiscard]] std::size_t Columns() const override { return std::size(kItemColumns); }
    [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const override {
        const CatalogueEntry& entry = At(row);
        return column == 0 ? std::string_view(entry.Name) : std::string_view(entry.Description);
    }

  private:
    CatalogueEntries entries_;
    bool isRead_ = true;
};

} // namespace bv
