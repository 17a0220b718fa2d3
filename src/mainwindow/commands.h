// The routines of the commands. The rows of the table of commands (mainwindow/command_table.cpp) name them;
// what they do to a subject is done by the subject's controller. For the thread of the logic only.
#pragma once

#include "mainwindow/command_table.h"

namespace hl {

struct MainForm;

namespace commands {

// --- the main bar
void newSource(MainForm& form, const CommandRow& row);
void start(MainForm& form, const CommandRow& row);
void stop(MainForm& form, const CommandRow& row);
void scanOption(MainForm& form, const CommandRow& row);
void showPanel(MainForm& form, const CommandRow& row);
void showMap(MainForm& form, const CommandRow& row);
void showOptions(MainForm& form, const CommandRow& row);
void showLog(MainForm& form, const CommandRow& row);
void openGuide(MainForm& form, const CommandRow& row);
void showAbout(MainForm& form, const CommandRow& row);
void openHomepage(MainForm& form, const CommandRow& row);
void largeIcons(MainForm& form, const CommandRow& row);
void iconText(MainForm& form, const CommandRow& row);
void changeFontSize(MainForm& form, const CommandRow& row);
void changeFontOfAll(MainForm& form, const CommandRow& row);
void changeLanguage(MainForm& form, const CommandRow& row);
void quit(MainForm& form, const CommandRow& row);
void deleteFolders(MainForm& form, const CommandRow& row);
void recycleFolders(MainForm& form, const CommandRow& row);
void takeBack(MainForm& form, const CommandRow& row);
void comesBack(MainForm& form, const CommandRow& row);
void showNotRead(MainForm& form, const CommandRow& row);

// --- several views
void showSizes(MainForm& form, const CommandRow& row);
void changeFont(MainForm& form, const CommandRow& row);
void fullView(MainForm& form, const CommandRow& row);

// --- the report
void reportRescan(MainForm& form, const CommandRow& row);
void reportFoldAll(MainForm& form, const CommandRow& row);
void reportUnfoldAll(MainForm& form, const CommandRow& row);
void reportUnfold(MainForm& form, const CommandRow& row);
void reportRemove(MainForm& form, const CommandRow& row);
void reportRemoveAll(MainForm& form, const CommandRow& row);
void reportSave(MainForm& form, const CommandRow& row);
void reportSaveScan(MainForm& form, const CommandRow& row);
void reportOpenScan(MainForm& form, const CommandRow& row);
void reportCompare(MainForm& form, const CommandRow& row);
void reportCompareFile(MainForm& form, const CommandRow& row);
void reportPrint(MainForm& form, const CommandRow& row);
void reportColumn(MainForm& form, const CommandRow& row);
void reckonOnDisk(MainForm& form, const CommandRow& row);
void reportBalance(MainForm& form, const CommandRow& row);
void reportFit(MainForm& form, const CommandRow& row);
void reportSearch(MainForm& form, const CommandRow& row);

// --- the drives
void drivesRefresh(MainForm& form, const CommandRow& row);
void drivesRead(MainForm& form, const CommandRow& row);
void drivesReadAll(MainForm& form, const CommandRow& row);
void drivesBalance(MainForm& form, const CommandRow& row);
void drivesAdd(MainForm& form, const CommandRow& row);

// --- the lists
void listOwnCommand(MainForm& form, const CommandRow& row);
void listDelete(MainForm& form, const CommandRow& row);
void listRecycle(MainForm& form, const CommandRow& row);
void listIcons(MainForm& form, const CommandRow& row);
void listPreview(MainForm& form, const CommandRow& row);
void listSplit(MainForm& form, const CommandRow& row);
void listColumn(MainForm& form, const CommandRow& row);
void listFit(MainForm& form, const CommandRow& row);
void listSave(MainForm& form, const CommandRow& row);
void listPrint(MainForm& form, const CommandRow& row);
void listSearch(MainForm& form, const CommandRow& row);

// --- the files that a search has found
void findStart(MainForm& form, const CommandRow& row);
void findForm(MainForm& form, const CommandRow& row);

// --- the map
void mapColour(MainForm& form, const CommandRow& row);
void mapUp(MainForm& form, const CommandRow& row);
void mapSave(MainForm& form, const CommandRow& row);
void mapPrint(MainForm& form, const CommandRow& row);

}  // namespace commands

}  // namespace hl
