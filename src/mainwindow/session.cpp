#include "mainwindow/session.h"

#include "mainwindow/pane_table.h"
#include "views/list_columns.h"
#include "views/report_columns.h"

namespace hl {

Grid& Session::grid(GridId id) {
    return this->*paneRows()[static_cast<std::size_t>(id)].grid;
}

void Form_Load(Session& session) {
    const Services& services = session.services;
    const IniText settings = services.settings.read();
    OptionenLadenMain(session.options, settings, services.diagnostics, false);
    for (const OptionBar bar : {OptionBar::kMain, OptionBar::kFiles, OptionBar::kTop, OptionBar::kHardlinks})
        loadBarOptions(session.options, settings, services.diagnostics, bar);
    Init_Tree(session.tvwPL, session.options, services.texts);
    Init_List(session.lvwTOP, kTopTable, session.options, services.texts);
    Init_List(session.lvwHardlinks, kHardlinksTable, session.options, services.texts);
    Init_List(session.lvwJunctions, kJunctionsTable, session.options, services.texts);
    Init_List(session.lvwFind, kFindTable, session.options, services.texts);
}

ScanContext scanContext(Session& session, ScanHost& host, Controls& controls) {
    return {session.services,
            session.state,
            session.options,
            session.cboOrdner,
            session.tvwPL,
            session.lvwTOP,
            session.lvwHardlinks,
            session.lvwJunctions,
            host,
            controls};
}

}  // namespace hl
