#include "scan/saved/scan_writer.h"

#include "base/json_text.h"
#include "base/leb128.h"

namespace hl {

namespace {

void appendText(std::string& out, std::string_view text) {
    appendLeb(out, text.size());
    out += text;
}

void appendSums(std::string& out, const FileSums& sums) {
    appendLeb(out, sums.files);
    appendLeb(out, sums.bytes);
    appendLeb(out, sums.blocks);
}

void appendTables(std::string& out, const SavedScan& scan, const ScanSums& sums) {
    appendLeb(out, scan.endings.size());
    for (const std::string& ending : scan.endings) appendText(out, ending);
    appendLeb(out, scan.owners.size());
    for (const auto& [uid, name] : scan.owners) {
        appendLeb(out, uid);
        appendText(out, name);
    }
    appendLeb(out, scan.largest.size());
    for (const LargestRecord& file : scan.largest) {
        appendLeb(out, file.record);
        appendText(out, file.name);
        appendLeb(out, file.bytes);
        appendLeb(out, file.blocks);
        appendLeb(out, zigzag(file.written));
        appendLeb(out, file.owner);
    }
    for (const std::uint64_t sum : {sums.folders, sums.files, sums.bytes, sums.blocks, sums.errors})
        appendLeb(out, sum);
}

// The last cell has what the others leave of the folder's own figures.
void appendCells(std::string& out, const std::vector<ScanCell>& cells) {
    appendLeb(out, cells.size());
    for (const ScanCell& cell : cells) {
        appendLeb(out, cell.ending);
        appendLeb(out, cell.age);
        appendLeb(out, cell.owner);
        if (&cell != &cells.back()) appendSums(out, cell.sums);
    }
}

}  // namespace

std::string scanHeaderLine(const ScanHeader& header) {
    std::string line = "{\"program\":";
    appendJsonString(line, header.program);
    appendJsonString(line += ",\"version\":", header.version);
    appendJsonString(line += ",\"host\":", header.host);
    appendJsonPath(line += ',', "source", header.source);
    line.append(",\"started\":").append(std::to_string(header.started));
    line.append(",\"ended\":").append(std::to_string(header.ended));
    line.append(",\"device\":").append(std::to_string(header.device));
    line.append(",\"complete\":").append(header.complete ? "true" : "false");
    return line.append(",\"options\":").append(header.options).append("}\n");
}

void ScanWriter::begin(std::string& out, const std::string& headerLine) {
    const std::size_t from = out.size();
    out.append(kScanMagic).append(headerLine);
    crc_.add(std::string_view(out).substr(from));
}

// A time is written as how long it lies before the start, which wraps for times that make no sense.
std::uint64_t ScanWriter::before(std::int64_t time) const {
    return zigzag(
        static_cast<std::int64_t>(static_cast<std::uint64_t>(started_) - static_cast<std::uint64_t>(time)));
}

void ScanWriter::folder(std::string& out, const ScanRecord& folder) {
    const std::size_t from = out.size();
    appendText(out, folder.name);
    appendLeb(out, folder.flags);
    if ((folder.flags & kScanError) != 0) appendLeb(out, folder.error);
    if ((folder.flags & kScanLeftOut) != 0) appendLeb(out, folder.rule);
    if ((folder.flags & kScanOtherDevice) != 0) appendLeb(out, folder.device);
    appendLeb(out, folder.inode);
    if ((folder.flags & kScanCreated) != 0) appendLeb(out, before(folder.created));
    appendLeb(out, folder.children);
    appendLeb(out, folder.own.files);
    if (folder.own.files > 0) {
        appendLeb(out, folder.own.bytes);
        appendLeb(out, folder.own.blocks);
        appendLeb(out, before(folder.newest));
        appendCells(out, folder.cells);
    }
    crc_.add(std::string_view(out).substr(from));
    if (!first_) ++sums_.folders;
    first_ = false;
    sums_.files += folder.own.files;
    sums_.bytes += folder.own.bytes;
    sums_.blocks += folder.own.blocks;
    if ((folder.flags & kScanError) != 0) ++sums_.errors;
}

void ScanWriter::end(std::string& out, const SavedScan& tables) {
    const std::size_t from = out.size();
    appendTables(out, tables, sums_);
    crc_.add(std::string_view(out).substr(from));
    for (unsigned shift = 0; shift < 32; shift += 8) out += static_cast<char>(crc_.value() >> shift & 255U);
    out += kScanEnd;
}

}  // namespace hl
