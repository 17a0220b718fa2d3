#include "output/json_lines.h"

#include <array>
#include <charconv>
#include <vector>

#include "base/json_text.h"
#include "output/report_file.h"
#include "output/scan_output.h"
#include "scan/not_read.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "scan/saved/scan_format.h"
#include "scan/scan_options_text.h"
#include "scan/yield.h"

namespace hl {

namespace {

// In one piece the word is the system's variable, which this room may not read (tests/house_test.cpp).
constexpr std::string_view kErrorNumberKey =
    "err"
    "no";

void appendWhole(std::string& out, double number) {
    std::array<char, 24> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<std::int64_t>(number)).ptr;
    out.append(digits.data(), end);
}

class JsonLines {
  public:
    JsonLines(ScanContext& scan, std::int32_t levels, ReportFile& file)
        : scan_(scan), report_(scan.tvwPL), levels_(levels), file_(file), yield_(scan.state, scan.pump) {}

    void writeSource(Row source) {
        path_ = report_.text(source);
        writeBegin(source);
        writeTree(source);
        for (const Row row : errors_) writeError(row);
        errors_.clear();
        writeEnd(source);
    }

  private:
    void number(std::string_view key, double value) {
        out().append(",\"").append(key).append("\":");
        appendWhole(out(), value);
    }
    std::string& out() { return file_.block(); }
    void path(std::string_view kind, const std::string& text) {
        out().append("{\"k\":\"").append(kind).append("\",");
        appendJsonPath(out(), "path", text);
    }
    void endLine() {
        out() += "}\n";
        file_.endLine();
    }

    void writeBegin(Row source);
    void writeTree(Row source);
    Row behind(Row row, Row source);
    void writeFolder(Row row);
    void appendOwn(Row row);
    void appendFlags(Row row);
    void writeError(Row row);
    void writeEnd(Row source);

    ScanContext& scan_;
    const Grid& report_;
    const std::int32_t levels_;
    ReportFile& file_;
    Yield yield_;
    std::string path_;                  ///< Of the current folder.
    std::vector<std::size_t> parents_;  ///< How long the paths of the folders above are.
    std::vector<Row> errors_;
};

void JsonLines::writeBegin(Row source) {
    const SourceFacts* facts = scan_.facts->sourceOf(source);
    const bool saved = facts != nullptr && facts->saved != nullptr;
    out().append("{\"k\":\"s\",\"v\":1,\"host\":");
    appendJsonString(out(), saved ? facts->saved->header.host : scan_.machine);
    out() += ',';
    appendJsonPath(out(), "path", path_);
    number("started", facts == nullptr ? 0 : static_cast<double>(facts->started));
    number("levels", levels_);
    out().append(",\"options\":").append(facts == nullptr ? scanOptionsJson(scan_) : facts->options);
    endLine();
}

// Rows below the wanted levels are looked at only for what could not be read.
void JsonLines::writeTree(Row source) {
    parents_.clear();
    for (Row row = source; row != kNoRow && file_.isFine();) {
        yield_.perEntry();
        if (report_.number(row, kIsFolder) == 1) {
            const bool isShown = std::int64_t{report_.level(row)} <= levels_;
            if (row != source && isShown) {
                path_.resize(parents_.back());
                if (!path_.ends_with(scan_.paths.separator)) path_ += scan_.paths.separator;
                path_ += report_.text(row);
            }
            if (isShown) writeFolder(row);
            const RareFacts* rare = scan_.facts->rareOf(row);
            if (isNotRead(report_, row) || (rare != nullptr && rare->error)) errors_.push_back(row);
            const bool goesDown = std::int64_t{report_.level(row)} < levels_ || report_.mark(row) > 0;
            if (goesDown && report_.hasChildren(row)) {
                parents_.push_back(path_.size());
                row = report_.firstChild(row);
                continue;
            }
        }
        row = behind(row, source);
    }
}

Row JsonLines::behind(Row row, Row source) {
    while (row != source && report_.nextSibling(row) == kNoRow) {
        row = report_.parent(row);
        parents_.pop_back();
    }
    return row == source ? kNoRow : report_.nextSibling(row);
}

void JsonLines::writeFolder(Row row) {
    path("f", path_);
    number("depth", report_.level(row));
    number("size", report_.number(row, kSize));
    number("disk", report_.number(row, kDisk));
    number("files", report_.number(row, kFiles));
    number("folders", report_.number(row, kFolders));
    appendOwn(row);
    number("newest", report_.number(row, kNewest));
    number("errors", foldersNotRead(report_, row));
    appendFlags(row);
    endLine();
}

// The files row has what lies directly in a folder that has folders, too, whose rows need not be there.
void JsonLines::appendOwn(Row row) {
    const Row own = report_.number(row, kFolders) > 0 ? filesRowBelow(report_, row) : row;
    number("own_files", own == kNoRow ? 0 : report_.number(own, kFiles));
    number("own_size", own == kNoRow ? 0 : report_.number(own, kSize));
}

void JsonLines::appendFlags(Row row) {
    const int picture = report_.picture(row);
    const RareFacts* rare = scan_.facts->rareOf(row);
    bool first = true;
    const auto flag = [&](bool on, std::string_view name) {
        if (on) out().append(std::exchange(first, false) ? "\"" : ",\"").append(name).append("\"");
    };
    out() += ",\"flags\":[";
    flag(picture == kPictureLink, "link");
    flag(picture == kPictureMountPoint, "mount");
    flag(picture == kPictureAccessError || (rare != nullptr && rare->error), "error");
    flag(picture == kPictureSnapshot, "snapshot");
    flag(picture == kPictureLeftOut, "leftout");
    flag(picture == kPictureIncomplete || (rare != nullptr && rare->stopped), "stopped");
    out() += ']';
}

void JsonLines::writeError(Row row) {
    const RareFacts* rare = scan_.facts->rareOf(row);
    path("e", Report_GetFullpathOfNode(report_, row, false, scan_.paths));
    const bool known = rare != nullptr && rare->error;
    number(kErrorNumberKey, known ? rare->error->number : 0);
    out() += ",\"error\":";
    appendJsonString(out(), known ? rare->error->text : "stopped");
    endLine();
}

void JsonLines::writeEnd(Row source) {
    const SourceFacts* facts = scan_.facts->sourceOf(source);
    const Unshown leftOut = report_.unshown(source);
    path("t", std::string(report_.text(source)));
    number("size", report_.number(source, kSize));
    number("disk", report_.number(source, kDisk));
    number("files", report_.number(source, kFiles));
    number("folders", report_.number(source, kFolders));
    number("errors", foldersNotRead(report_, source));
    number("left_out", static_cast<double>(leftOut.folders) + leftOut.files);
    number("ended", facts == nullptr ? 0 : static_cast<double>(facts->ended));
    out().append(",\"complete\":").append(isWhole(scan_, source) ? "true" : "false");
    endLine();
}

}  // namespace

ReportOutcome writeJsonLines(ScanContext& scan, std::int32_t levels, ReplacingFile& target) {
    ReportFile file(target);
    JsonLines lines(scan, levels, file);
    for (Row source = scan.tvwPL.firstRoot(); source != kNoRow; source = scan.tvwPL.nextSibling(source))
        lines.writeSource(source);
    return commitReport(file, target);
}

}  // namespace hl
