// A bar's entries as the lines of a table. For the builders alone.
#pragma once

#include <span>
#include <string_view>

#include "app/texts.h"
#include "mainwindow/bars.h"
#include "platform/icons.h"

namespace hl::bar_rows {

/// A text that is looked up when the bar is built.
struct RowText {
    int id = 0;
    std::string_view german = {};
};

/// Stands in a table as the call of the same name stands in code.
constexpr RowText TL(int id, std::string_view german) {
    return {id, german};
}

inline constexpr auto kButton = EntryKind::kButton;
inline constexpr auto kSplitButton = EntryKind::kSplitButton;
inline constexpr auto kMenuButton = EntryKind::kMenuButton;
inline constexpr auto kEdit = EntryKind::kEdit;
inline constexpr auto kCustom = EntryKind::kCustom;
inline constexpr auto kLabel = EntryKind::kLabel;
inline constexpr auto kCheckBox = EntryKind::kCheckBox;

/// A member of its own kind, so that it cannot be mistaken for another flag.
enum class Group : bool { kGoesOn, kBegins };
inline constexpr auto kGroup = Group::kBegins;
inline constexpr auto kSame = Group::kGoesOn;

// In the order in which a row of a table is read.
struct EntryRow {  // NOLINT(clang-analyzer-optin.performance.Padding)
    int id;
    EntryKind kind;
    RowText caption = {};
    RowText tooltip = {};  ///< Where it is empty, the caption serves.
    int icon = -1;
    Group group = kSame;
    std::string_view key = {};
    int parent = 0;  ///< The entry or popup that it lies below.
    int width = 0;   ///< See BarEntry.
};

/// `arguments` are those of the caption.
void addRow(CommandBar& bar, const EntryRow& row, const Texts& texts,
            std::initializer_list<SimpleValue> arguments = {});
void addRows(CommandBar& bar, std::span<const EntryRow> rows, const Texts& texts);

}  // namespace hl::bar_rows
