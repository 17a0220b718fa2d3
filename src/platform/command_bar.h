// Command bars as plain data: the logic builds and switches entries, a window draws them and clicks, tests
// do both by hand. Thread of the logic only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

/// The seven bars of the main window, the main one first.
enum class BarId : std::uint8_t { kMain, kReport, kDrives, kFiles, kTop, kHardlinks, kJunctions };
constexpr std::size_t kBarCount = 7;

enum class EntryKind : std::uint8_t {
    kButton = 1,
    kSplitButton = 4,  ///< With a list below it.
    kMenuButton = 5,   ///< Opens its list and does nothing else.
    kEdit = 6,
    kCustom = 7,  ///< A place for a control of the form: the combo box of sources.
    kLabel = 8,
    kCheckBox = 9,
};

constexpr int kNoIcon = 9999;

struct BarEntry {
    int id = 0;  ///< Unique in its bar; 0 for a label.
    EntryKind kind = EntryKind::kButton;
    std::string caption = {};
    std::string tooltip = {};
    int icon = kNoIcon;  ///< See platform/icons.h.
    bool beginGroup = false;
    bool checked = false;
    bool visible = true;
    bool enabled = true;
    int key = 0;            ///< Virtual key code of an accelerator, with Ctrl; a function key stands alone.
    std::string text = {};  ///< What stands in an edit box.
    std::vector<BarEntry> list = {};  ///< Below a split or menu button, or in a popup.
    bool showsCaption = false;        ///< Beside its icon, where captions are not below all icons.
    int width = 0;                    ///< Of an edit box, in pixels; 0: as the bar has room.
};

enum class BarEdge : std::uint8_t { kTop, kBottom, kLeft, kRight };

/// Where a bar stands, as far as the user may move it.
struct BarPlace {
    BarEdge edge = BarEdge::kTop;
    int order = 0;  ///< Among the bars of that edge.
    bool visible = true;
    bool operator==(const BarPlace&) const = default;
};

class CommandBar;

class BarObserver {
  public:
    virtual ~BarObserver() = default;
    /// An entry's text or flags. Must not change the bar.
    virtual void entryChanged(const CommandBar& bar, const BarEntry& entry) = 0;
    /// Entries were added, or how all of them look has changed: build anew.
    virtual void barChanged(const CommandBar& bar) = 0;
};

class CommandBar {
  public:
    CommandBar(BarId id, std::string name) : id_(id), name_(std::move(name)) {}
    CommandBar(const CommandBar&) = delete;
    CommandBar& operator=(const CommandBar&) = delete;

    BarId id() const { return id_; }
    const std::string& name() const { return name_; }  ///< "cbrMain"
    const std::vector<BarEntry>& entries() const { return entries_; }
    const std::vector<BarEntry>& popups() const { return popups_; }

    /// Names the bar to those who cannot see it.
    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    /// Adds an entry at the end; below the split button or popup `parent` if that is not 0. The
    /// reference is good until the next call. REQUIRES: the bar has `parent`.
    BarEntry& add(BarEntry entry, int parent = 0);
    /// A menu that is opened by its id and stands in no toolbar.
    BarEntry& addPopup(BarEntry popup);

    /// By id, also in lists and popups; the first one that matches. Null if there is none.
    const BarEntry* find(int id) const;
    bool isChecked(int id) const;
    std::string textOf(int id) const;
    /// Nothing happens for an id that the bar does not have.
    void setChecked(int id, bool on);
    void setEnabled(int id, bool on);
    void setVisible(int id, bool on);
    void setCaption(int id, std::string_view caption);
    void setText(int id, std::string_view text);
    void toggle(int id) { setChecked(id, !isChecked(id)); }
    /// Every entry of the toolbar, its lists included; popups stay as they are.
    void setAllEnabled(bool on);

    const BarPlace& place() const { return place_; }
    void setPlace(const BarPlace& place);

    bool largeIcons() const { return largeIcons_; }
    bool textBelowIcons() const { return textBelowIcons_; }
    bool clips() const { return clips_; }
    void setLargeIcons(bool on);
    void setTextBelowIcons(bool on);
    /// Parts that do not fit are behind a button at the end, instead of on a further row.
    void setClips(bool on);

    /// One at a time; null takes it away.
    void attach(BarObserver* observer) { observer_ = observer; }

  private:
    template <class Change>
    void change(int id, Change change);
    void enableAll(std::vector<BarEntry>& entries, bool on);
    template <class Value>
    void changeLook(Value& value, const Value& wanted);

    BarId id_;
    std::string name_;
    std::string title_;
    BarPlace place_;
    std::vector<BarEntry> entries_;
    std::vector<BarEntry> popups_;
    bool largeIcons_ = false;
    bool textBelowIcons_ = false;
    bool clips_ = false;
    BarObserver* observer_ = nullptr;
};

}  // namespace hl
