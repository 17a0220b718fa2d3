#include "scan/file_kinds.h"

#include <algorithm>
#include <string>

#include "base/text.h"

namespace hl {

namespace {

struct KindRow {
    std::string_view name;
    std::string_view endings;  // Between blanks.
};

// In the order of FileKind. No ending stands in two rows.
constexpr std::array<KindRow, kFileKinds> kKinds = {{
    {"picture",
     "ai apng arw avif bmp cr2 cr3 cur dng emf eps exr gif hdr heic heif icns ico j2k jfif jp2 jpe jpeg jpg "
     "jxl kra nef orf pbm pcx pgm png pnm ppm psb psd raf raw rw2 svg svgz tga tif tiff webp wmf xbm xcf "
     "xpm"},
    {"film",
     "3g2 3gp asf avi divx f4v flv m2ts m2v m4v mkv mov mp4 mpe mpeg mpg mts mxf ogv rm rmvb ts vob "
     "webm wmv"},
    {"sound",
     "aac ac3 aif aiff alac amr ape au dts flac m3u m4a m4b mid midi mka mp2 mp3 mpc oga ogg opus ra "
     "snd spx tta wav weba wma wv"},
    {"document",
     "abw adoc asciidoc doc docm docx dot dotx dvi fodt htm html md odg odt ott pages pdf ps "
     "rst rtf sxw tex texi txt wpd wps wri xhtml xps"},
    {"table", "csv fods gnumeric numbers ods ots slk sxc tsv xls xlsb xlsm xlsx xlt xltx"},
    {"slides", "fodp key odp otp potx pps ppsx ppt pptm pptx sxi"},
    {"book", "azw azw3 cb7 cbr cbz djv djvu epub fb2 lit lrf mobi prc"},
    {"archive",
     "7z ace arj br bz bz2 cab cpio gz lha lz lz4 lzh lzma lzo rar sit tar tbz tbz2 tgz txz tzst "
     "xz z zip zipx zst zstd"},
    {"disk image", "cue dmg hdd img iso mdf mds nrg ova ovf qcow qcow2 squashfs vdi vhd vhdx vmdk wim"},
    {"package",
     "aab apk appimage crate deb ebuild egg flatpak flatpakref gem ipa jar msi msix nupkg pkg "
     "rpm snap udeb vsix war whl xpi"},
    {"program",
     "app bash bat class cmd com csh elf exe fish gadget ko ksh msc out ps1 run scr sh wasm wsf "
     "zsh"},
    {"library", "a dll dylib la lib ocx rlib rmeta so sys"},
    {"source text",
     "ada adb ads asm awk c cc cfg cl clj cmake conf cpp cs css cxx d dart diff el erl ex exs f f03 f77 f90 "
     "f95 for fs go gradle groovy h hh hpp hs hxx idl in ini ipp ipynb java jl js json5 jsx kt kts less lisp "
     "lua m m4 mk ml mli mm mjs nim nix pas patch php pl pm po pot po4a properties proto py pyi pyx qml r "
     "rb rkt rs s sass scala scm scss sed sql sv swift tcl toml tsx v vala vb vhdl vim vue xsd xsl xslt "
     "y yaml yml zig"},
    {"data and database",
     "accdb arrow avro bib cdb dat data db db3 dbf feather fdb geojson gpkg h5 hdf5 ics json jsonl kml ldb "
     "mat mdb mo myd myi nc ndjson npy npz odb orc parquet pcap pickle pkl plist rdb rdf sdf shp sqlite "
     "sqlite3 tfrecord vcf wal xml"},
    {"log", "etl evtx journal log trace"},
    {"mail", "eml emlx mbox mbx msf msg nsf ost pst"},
    {"font", "afm bdf eot otb otc otf pcf pfa pfb pfm ttc ttf woff woff2"},
    {"backup and temporary",
     "bak bck bkp bkf crdownload download dpkg-old gho old orig part partial rej "
     "save sav swo swp temp tib tmp"},
    {"cache and build product",
     "cache dep dwo elc gcda gcno gch idx lo lock map o obj pch pdb pyc pyo qmlc "
     "rcgu tlog tsbuildinfo"},
    {"other", ""},
}};

struct KnownEnding {
    std::string_view ending;
    FileKind kind = FileKind::kOther;
};

// Calls `tell` with each ending of the table and its kind.
template <class Tell>
constexpr void forEachEnding(const Tell& tell) {
    for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
        std::string_view rest = kKinds[kind].endings;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find(' '), rest.size());
            tell(KnownEnding{rest.substr(0, end), static_cast<FileKind>(kind)});
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
}

constexpr std::size_t countEndings() {
    std::size_t count = 0;
    forEachEnding([&](const KnownEnding&) { ++count; });
    return count;
}

constexpr auto sortedEndings() {
    std::array<KnownEnding, countEndings()> sorted;
    std::size_t count = 0;
    forEachEnding([&](const KnownEnding& each) { sorted[count++] = each; });
    std::ranges::sort(sorted, {}, &KnownEnding::ending);
    return sorted;
}

constexpr auto kEndings = sortedEndings();
static_assert(std::ranges::adjacent_find(kEndings, {}, &KnownEnding::ending) == kEndings.end());

char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Nearly all endings are ASCII, for which nothing is decoded.
bool isUtf8(std::string_view text) {
    const auto isAscii = [](char c) { return static_cast<signed char>(c) >= 0; };
    return std::ranges::all_of(text, isAscii) || decodable(text) == text;
}

}  // namespace

Ending::Ending(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return;
    const std::string_view ending = name.substr(dot + 1);
    if (ending.size() > kLongest || !isUtf8(ending)) return;
    std::ranges::transform(ending, bytes_.begin(), asciiLower);
    length_ = static_cast<std::uint8_t>(ending.size());
}

FileKind kindOfEnding(std::string_view ending) {
    const auto found = std::ranges::lower_bound(kEndings, ending, {}, &KnownEnding::ending);
    return found != kEndings.end() && found->ending == ending ? found->kind : FileKind::kOther;
}

std::string_view nameOf(FileKind kind) {
    return kKinds[static_cast<std::size_t>(kind)].name;
}

std::optional<FileKind> kindNamed(std::string_view name) {
    for (std::size_t kind = 0; kind < kKinds.size(); ++kind)
        if (compareFolded(kKinds[kind].name, name) == 0) return static_cast<FileKind>(kind);
    return std::nullopt;
}

}  // namespace hl
