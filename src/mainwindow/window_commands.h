// Carries out the commands of the bars; the rows of the table of commands name these routines.
//
// An exception that leaves a routine ends in the trap of its bar. For the thread of the logic only.
#pragma once

#include <string>

#include "mainwindow/command_table.h"
#include "platform/window.h"

namespace hl {

class ListView;
class WindowForm;

class WindowCommands {
  public:
    /// `form` must outlive it.
    explicit WindowCommands(WindowForm& form) : form_(form) {}

    /// Carries out a command of a bar: first its option, then its routine. Nothing happens if the bar does
    /// not have the command, or if it is disabled.
    void execute(BarId bar, int id);
    /// Carries out Return in a box: runs the routine of `id`, if it has one and no scan is running.
    void returnIn(BarId bar, int id);

    // --- the main bar
    void newSource(const CommandRow& row);
    void start(const CommandRow& row);
    void stop(const CommandRow& row);
    void scanOption(const CommandRow& row);
    void showPanel(const CommandRow& row);
    void showOptions(const CommandRow& row);
    void showLog(const CommandRow& row);
    void showAbout(const CommandRow& row);
    void openHomepage(const CommandRow& row);
    void largeIcons(const CommandRow& row);
    void iconText(const CommandRow& row);
    void changeFontSize(const CommandRow& row);
    void changeFontOfAll(const CommandRow& row);
    void changeLanguage(const CommandRow& row);
    void quit(const CommandRow& row);
    void deleteFolders(const CommandRow& row);
    void recycleFolders(const CommandRow& row);

    // --- several views
    void showSizes(const CommandRow& row);
    void changeFont(const CommandRow& row);
    void fullView(const CommandRow& row);

    // --- the report
    void reportRescan(const CommandRow& row);
    void reportFoldAll(const CommandRow& row);
    void reportUnfoldAll(const CommandRow& row);
    void reportUnfold(const CommandRow& row);
    void reportRemove(const CommandRow& row);
    void reportRemoveAll(const CommandRow& row);
    void reportSave(const CommandRow& row);
    void reportPrint(const CommandRow& row);
    void reportColumn(const CommandRow& row);
    void reportFit(const CommandRow& row);
    void reportSearch(const CommandRow& row);

    // --- the drives
    void drivesRefresh(const CommandRow& row);
    void drivesRead(const CommandRow& row);
    void drivesReadAll(const CommandRow& row);
    void drivesAdd(const CommandRow& row);

    // --- the lists
    void listOwnCommand(const CommandRow& row);
    void listDelete(const CommandRow& row);
    void listRecycle(const CommandRow& row);
    void listIcons(const CommandRow& row);
    void listPreview(const CommandRow& row);
    void listSplit(const CommandRow& row);
    void listColumn(const CommandRow& row);
    void listFit(const CommandRow& row);
    void listSave(const CommandRow& row);
    void listPrint(const CommandRow& row);
    void listSearch(const CommandRow& row);

  private:
    void keep(const CommandRow& row);
    void startUrl(std::string url);
    bool tellIncomplete();
    void setFont(GridId grid, const GridFont& font);
    ListView& list(const CommandRow& row);

    WindowForm& form_;
};

}  // namespace hl
