#include "mainwindow/about_form.h"

#include "app/product.h"

namespace hl {

AboutForm::AboutForm(const AboutServices& services) : services_(services) {
    const Texts& texts = services_.texts;
    caption = texts.TL(9462, "Info über Harborlantern");
    lblName = kProductName;
    lblVersion = "Version " + services_.version + std::string(services_.portable ? kPortableEdition : "");
    Image2 = texts.TL(9463, "Unterstützen Sie mit einer Spende die weitere Entwicklung von Harborlantern");
    lblForum = texts.TL(9464, "Forum");
    lblHomepage = texts.TL(3553, "Homepage");
    tabInfo[0].caption = texts.TL(9466, "Programm");
    tabInfo[1].caption = texts.TL(9467, "Größen");
    tabInfo[2].caption = texts.TL(3624, "Dateien");
    texts_ = {
        texts.TL(9469,
                 "Harborlantern zeigt, wo der Platz auf den Datenträgern geblieben ist. Jede Quelle wird "
                 "einmal durchgegangen; die Größen der Dateien werden Ordner für Ordner zusammengezählt."),
        texts.TL(
            9470,
            "Eine Datei zählt mit ihrer scheinbaren Größe, nicht mit den Blöcken, die sie belegt. "
            "Verknüpfungen und eingehängten Dateisystemen wird nur gefolgt, wenn es eingeschaltet ist. "
            "Eine Datei mit mehreren Namen zählt unter jedem davon, solange nichts anderes gewählt ist."),
        texts.TL(
            9471,
            "Einstellungen und Protokolle liegen im Ordner des Programms; wurde es als Paket installiert, "
            "dann in ~/.config/harborlantern. Die Umgebungsvariable HARBORLANTERN_HOME kann einen anderen "
            "Ordner nennen."),
    };
    selectOption(tabInfo, 0);
    tabInfo_Click();
    cmdOK.caption = texts.TL(3610, "OK");
}

Form AboutForm::form() {
    const auto leaf = [this](std::size_t index) {
        return FormItem{.control = &tabInfo[index],
                        .row = 2,
                        .column = static_cast<int>(index),
                        .group = 1,
                        .changed = [this] { tabInfo_Click(); }};
    };
    std::vector<FormItem> items = {{.control = &lblName, .columnSpan = 3},
                                   {.control = &lblVersion, .row = 1, .columnSpan = 3},
                                   leaf(0),
                                   leaf(1),
                                   leaf(2),
                                   {.control = &txtInfo, .row = 3, .columnSpan = 3, .name = caption}};
    addLinks(items);
    return {.name = "frmInfo",
            .caption = caption,
            .items = std::move(items),
            .buttons = {{.control = &cmdOK, .changed = [this] { cmdOK_Click(); }}},
            .cancel = [this] { cmdOK_Click(); },
            .loaded = &loaded};
}

// Adds links for those pages that exist, without a gap between them.
void AboutForm::addLinks(std::vector<FormItem>& items) {
    int column = 0;
    const auto add = [&](const std::string& page, FormItem link) {
        if (page.empty()) return;
        link.column = column++;
        items.push_back(std::move(link));
    };
    const Addresses& pages = services_.addresses;
    add(pages.homepage, {.control = &lblHomepage, .row = 4, .changed = [this] { lblHomepage_Click(); }});
    add(pages.forum, {.control = &lblForum, .row = 4, .changed = [this] { lblForum_Click(); }});
    const int row = column > 0 ? 5 : 4;
    column = 0;
    add(pages.donation, {.control = &Image2,
                         .row = row,
                         .columnSpan = 3,
                         .changed = [this] { Image2_Click(); },
                         .tooltip = Image2});
}

void AboutForm::tabInfo_Click() {
    const int chosen = GetOptionButtonSelectedIndex(tabInfo);
    if (chosen >= 0) txtInfo.text = texts_[static_cast<std::size_t>(chosen)];
}

void AboutForm::Image2_Click() {
    services_.StartURL(services_.addresses.donation);
}

void AboutForm::lblForum_Click() {
    services_.StartURL(services_.addresses.forum);
}

void AboutForm::lblHomepage_Click() {
    services_.StartURL(services_.addresses.homepage);
}

}  // namespace hl
