#include "ctlfile/rewriter.h"

#include "ctlfile/copy_back.h"
#include "ctlfile/lines.h"
#include "ctlfile/reader.h"

namespace bv {
namespace {

// Writes lines to the destination and knows whether the last one was empty.
class LineWriter {
  public:
    explicit LineWriter(ControlStream& destination) : destination_(destination) {}

    void Write(std::string_view line) { // cleaned already
        destination_.Write(line);
        destination_.Write(kLineEnd);
        lastWasEmpty_ = line.empty();
    }
    void Copy(std::string_view rawLine) {
        const std::string_view line = CountingPart(rawLine);
        if (FindControl(line, 0) == line.size()) {
            Write(line);
        } else {
            Write(CleanLine(line));
        }
    }
    void CopyAll(std::string_view rawLines) {
        while (!rawLines.empty()) {
            const std::string_view clean = TakeCleanLines(rawLines);
            if (!clean.empty()) WriteClean(clean);
            if (!rawLines.empty()) Copy(TakeLine(rawLines));
        }
    }
    // A paragraph that the file does not have, at its end.
    void StartParagraph(std::string_view header) {
        if (!lastWasEmpty_) Write("");
        Write(header);
    }

  private:
    void WriteClean(std::string_view lines) {
        destination_.Write(lines);
        lastWasEmpty_ = lines == kLineEnd || lines.ends_with("\n\r\n");
    }

    ControlStream& destination_;
    bool lastWasEmpty_ = true;
};

class KeyEdit {
  public:
    explicit KeyEdit(const KeyChange& change)
        : change_(change), hasKey_(change.Key && !change.Key->empty()), inTarget_(!change.Paragraph),
          targetSeen_(!change.Paragraph) {}

    [[nodiscard]] bool InTarget() const { return inTarget_; }

    // The header of the next paragraph to enter; only the first one is.
    [[nodiscard]] std::optional<std::string_view> NextTarget() const {
        return targetSeen_ ? std::nullopt : change_.Paragraph;
    }

    void Enter() { inTarget_ = targetSeen_ = true; }

    void Leave(LineWriter& out) {
        WritePending(out);
        out.Write("");
        keyDone_ = true;
        inTarget_ = false;
    }

    void TargetLine(std::string_view line, LineWriter& out) {
        if (hasKey_ && !BeginsWith(line, *change_.Key)) {
            out.Copy(line);
        } else if (hasKey_ && change_.Where == Placing::InPlace) {
            WritePending(out);
            keyDone_ = true;
        }
    }

    void End(LineWriter& out) {
        if (!targetSeen_) out.StartParagraph(*change_.Paragraph);
        WritePending(out);
    }

  private:
    void WritePending(LineWriter& out) {
        if (!keyDone_ && hasKey_ && change_.Value) out.Write(KeyedLine(*change_.Key, *change_.Value));
    }

    const KeyChange& change_;
    bool hasKey_;
    bool inTarget_;
    bool targetSeen_;
    bool keyDone_ = false;
};

class RecordEdit {
  public:
    explicit RecordEdit(const RecordChange& change) : change_(change) {}

    [[nodiscard]] bool InTarget() const { return inTarget_; }

    // Every paragraph with the header is entered.
    [[nodiscard]] std::optional<std::string_view> NextTarget() const { return change_.Paragraph; }

    void Enter() { inTarget_ = targetSeen_ = true; }

    void Leave(LineWriter& out) {
        WritePending(out);
        out.Write("");
        inTarget_ = false;
    }

    void TargetLine(std::string_view line, LineWriter& out) {
        if (line.front() == change_.Marker) {
            OpeningLine(line, out);
        } else if (recordOpen_) {
            FieldLine(line, out);
        } else {
            out.Copy(line);
        }
    }

    void End(LineWriter& out) {
        if (!targetSeen_) out.StartParagraph(change_.Paragraph);
        if (!targetSeen_ || inTarget_) WritePending(out);
    }

  private:
    void OpeningLine(std::string_view line, LineWriter& out) {
        CloseRecord(out);
        if (recordDone_ || !BeginsWith(line, change_.RecordKey) || skipped_++ < change_.Skipped) {
            out.Copy(line);
            return;
        }
        recordDone_ = true;
        if (!change_.RecordValue) return;
        recordOpen_ = true;
        if (change_.Where == Placing::InPlace) {
            WriteOpeningLine(out);
        } else {
            out.Copy(line);
        }
    }

    void FieldLine(std::string_view line, LineWriter& out) {
        if (change_.FieldKey.empty()) return;
        if (BeginsWith(line, change_.FieldKey)) {
            WriteField(out);
        } else {
            out.Copy(line);
        }
    }

    void CloseRecord(LineWriter& out) {
        if (recordOpen_) WriteField(out);
        recordOpen_ = false;
    }

    void WritePending(LineWriter& out) {
        if (!recordDone_ && change_.RecordValue) {
            WriteOpeningLine(out);
            recordDone_ = recordOpen_ = true;
        }
        CloseRecord(out);
    }

    void WriteOpeningLine(LineWriter& out) {
        out.Write(std::string(change_.RecordKey).append(" ").append(*change_.RecordValue));
    }

    void WriteField(LineWriter& out) {
        const bool pending = !fieldDone_ && !change_.FieldKey.empty() && change_.FieldValue;
        if (pending) out.Write(KeyedLine(change_.FieldKey, *change_.FieldValue));
        fieldDone_ = true;
    }

    const RecordChange& change_;
    int skipped_ = 0;
    bool inTarget_ = false;
    bool targetSeen_ = false;
    bool recordOpen_ = false;
    bool recordDone_ = false;
    bool fieldDone_ = false;
};

// Copies what stands before the next paragraph to enter, and enters it.
template <class Edit>
void CopyToTarget(std::string_view& text, Edit& edit, LineWriter& out) {
    const std::optional<std::string_view> header = edit.NextTarget();
    const std::size_t target = header ? FindHeader(text, *header) : text.size();
    out.CopyAll(text.substr(0, target));
    text.remove_prefix(target);
    if (text.empty()) return;
    out.Copy(TakeLine(text));
    edit.Enter();
}

// Copies a line of the paragraph, or gives it to the edit when it says anything; empty lines go.
template <class Edit>
void CopyTargetLine(std::string_view line, Edit& edit, LineWriter& out) {
    const std::string_view part = CountingPart(line);
    if (IsSignificantLine(part))
        edit.TargetLine(part, out);
    else if (!part.empty())
        out.Copy(part);
}

template <class Edit>
bool CopyEdited(ControlStream& source, ControlStream& destination, Edit edit) {
    std::string_view text = source.Rest();
    LineWriter out(destination);
    while (!text.empty()) {
        if (edit.InTarget() && IsParagraphLine(text)) edit.Leave(out);
        if (edit.InTarget()) {
            CopyTargetLine(TakeLine(text), edit, out);
        } else {
            CopyToTarget(text, edit, out);
        }
    }
    edit.End(out);
    return !source.Failed() && !destination.Failed();
}

template <class Edit>
bool RewriteWith(const std::string& path, Edit edit) {
    Rewrite rewrite(path);
    if (!rewrite) return false;
    const bool rewritten = CopyEdited(rewrite.Control, rewrite.Temporary, edit) && rewrite.CopyBack();
    return rewrite.Finish() && rewritten;
}

} // namespace

bool CopyReplacingKey(ControlStream& source, ControlStream& destination, const KeyChange& change) {
    return CopyEdited(source, destination, KeyEdit(change));
}

bool UpdateControlFile(const std::string& path, const KeyChange& change) {
    return change.Paragraph && RewriteWith(path, KeyEdit(change));
}

bool UpdateControlFileRecord(const std::string& path, const RecordChange& change) {
    return !change.Paragraph.empty() && RewriteWith(path, RecordEdit(change));
}

} // namespace bv
