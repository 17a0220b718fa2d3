// Command bars as plain data: the logic builds them and switches entries; a window draws them and clicks;
// tests do both by hand. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/pane_ids.h"

namespace hl {

enum class EntryKind : std::uint8_t {
    kButton = 1,
    kSplitButton = 4,  ///< A button with a list below it.
    kMenuButton = 5,   ///< A button that only opens its list.
    kEdit = 6,
    kCustom = 7,  ///< A place for a control of the form, such as the combo box of sources.
    kLabel = 8,
    kCheckBox = 9,
};

constexpr int kNoIcon = 9999;

/// Added to a virtual key code, it stands for that key together with Shift.
constexpr int kKeyWithShift = 0x100;

struct BarEntry {
    int id = 0;  ///< Unique within its bar; 0 for a label.
    EntryKind kind = EntryKind::kButton;
    std::string caption = {};
    std::string tooltip = {};
    int icon = kNoIcon;  ///< See platform/icons.h.
    bool beginGroup = false;
    bool checked = false;
    bool visible = true;
    bool enabled = true;
    int key = 0;            ///< The virtual key code of its accelerator: a function key alone, any other key
                            ///< with Ctrl, and one plus kKeyWithShift with Ctrl and Shift.
    std::string text = {};  ///< The text in an edit box.
    std::vector<BarEntry> list = {};  ///< The entries below a split or menu button, or in a popup.
    bool showsCaption = false;        ///< The caption stands beside the icon, unless all captions are below
                                      ///< the icons.
    int width = 0;                    ///< The width of an edit box in pixels; 0 fits it to the bar.
    int rank = 1;                     ///< Where there is little room, the entries of the largest rank are the
                                      ///< first that go behind the button at the end.
};

enum class BarEdge : std::uint8_t { kTop, kBottom, kLeft, kRight };

/// The parts of a bar's place that the user may change.
struct BarPlace {
    BarEdge edge = BarEdge::kTop;
    int order = 0;  ///< Its rank among the bars of that edge.
    bool visible = true;
    bool operator==(const BarPlace&) const = default;
};

class CommandBar;

class BarObserver {
  public:
    virtual ~BarObserver() = default;
    /// An entry's text or flags changed. The call must not change the bar.
    virtual void entryChanged(const CommandBar& bar, const BarEntry& entry) = 0;
    /// Entries were added, or the look of all of them changed: the window must build the bar anew.
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

    /// The title by which screen readers name the bar.
    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    /// Adds an entry at the end, or, if `parent` is not 0, below that split button or popup. The reference is
    /// valid until the next call. REQUIRES: the bar has `parent`.
    BarEntry& add(BarEntry entry, int parent = 0);
    /// Adds a menu that is opened by its id and is in no toolbar.
    BarEntry& addPopup(BarEntry popup);

    /// Returns the first entry with this id, also from lists and popups; null if there is none.
    const BarEntry* find(int id) const;
    bool isChecked(int id) const;
    std::string textOf(int id) const;
    /// These do nothing for an id that the bar does not have.
    void setChecked(int id, bool on);
    void setEnabled(int id, bool on);
    void setVisible(int id, bool on);
    void setCaption(int id, std::string_view caption);
    void setTooltip(int id, std::string_view tooltip);
    void setText(int id, std::string_view text);
    void toggle(int id) { setChecked(id, !isChecked(id)); }
    /// Sets all entries of the toolbar, its lists included, but not the popups.
    void setAllEnabled(bool on);

    const BarPlace& place() const { return place_; }
    void setPlace(const BarPlace& place);

    bool largeIcons() const { return largeIcons_; }
    bool textBelowIcons() const { return textBelowIcons_; }
    int largerBy() const { return largerBy_; }
    bool clips() const { return clips_; }
    void setLargeIcons(bool on);
    void setTextBelowIcons(bool on);
    /// By how many points the bar's font is larger than that of the desktop.
    void setLargerBy(int points);
    /// If set, the bar has one row and not two. What does not fit is behind a button at the end.
    void setClips(bool on);

    /// Attaches the one observer; null detaches it.
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
    int largerBy_ = 0;
    BarObserver* observer_ = nullptr;
};

}  // namespace hl
