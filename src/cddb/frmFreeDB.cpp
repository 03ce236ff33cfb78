#include "cddb/frmFreeDB.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "cddb/CddbSocket.h"
#include "cddb/DiscQuery.h"
#include "cddb/WebSearch.h"
#include "platform/Dialogs.h"
#include "support/ErrorReport.h"
#include "support/FormParts.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

QString q(const std::string &text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QPushButton *button(QWidget *parent, const char *name, const char *caption, bool tagged = true) {
    return namedButton(parent, name, caption, tagged);
}

}  // namespace

frmFreeDB::frmFreeDB(FreedbHost host, QWidget *owner) : QDialog(owner), host_(std::move(host)) {
    setObjectName(QStringLiteral("frmFreeDB"));
    setWindowTitle(QStringLiteral("Disc Database"));
    if (host_.alwaysOnTop && host_.alwaysOnTop()) setWindowFlag(Qt::WindowStaysOnTopHint);

    lblServer = named(new QLabel(QStringLiteral("Server:"), this), "lblServer", false);
    listServers = named(new QComboBox(this), "listServers", true);
    listServers->setEditable(true);
    listServers->setInsertPolicy(QComboBox::NoInsert);
    listServers->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    cmdServerList = button(this, "cmdServerList", "Server &List");
    lblEmail = named(new QLabel(QStringLiteral("E-mail:"), this), "lblEmail", false);
    txtEmail = named(new QLineEdit(this), "txtEmail", true);
    lblServer->setBuddy(listServers);
    lblEmail->setBuddy(txtEmail);

    listAlbums = named(new QTreeWidget(this), "listAlbums", true);
    listAlbums->setColumnCount(3);
    listAlbums->setHeaderLabels(
        {QStringLiteral("Disc ID"), QStringLiteral("Category"), QStringLiteral("Title")});
    listAlbums->setRootIsDecorated(false);
    listAlbums->setUniformRowHeights(true);
    listAlbums->setAllColumnsShowFocus(true);
    listAlbums->header()->setStretchLastSection(true);
    listAlbums->setColumnWidth(0, 90);
    listAlbums->setColumnWidth(1, 90);
    listTracks = named(new QListWidget(this), "listTracks", true);
    listTracks->setUniformItemSizes(true);

    cmdGetTracks = button(this, "cmdGetTracks", "&Query");
    cmdTextSearch = button(this, "cmdTextSearch", "Text &Search");
    cmdTracklist = button(this, "cmdTracklist", "&Use Names");
    cmdQuit = button(this, "cmdQuit", "&Close", false);
    cmdGetTracks->setDefault(true);

    sbStatusBar = named(new QStatusBar(this), "sbStatusBar", false);
    sbStatusBar->setSizeGripEnabled(false);
    const int stretch[3] = {3, 2, 3};
    for (int i = 0; i < 3; ++i) {
        sbPanel[i] = named(new QLabel(sbStatusBar), "sbStatusBar", false);
        sbPanel[i]->setProperty("index", i + 1);
        sbPanel[i]->setFrameShape(QFrame::StyledPanel);
        sbPanel[i]->setFrameShadow(QFrame::Sunken);
        sbStatusBar->addPermanentWidget(sbPanel[i], stretch[i]);
    }

    auto *top = new QGridLayout;
    top->addWidget(lblServer, 0, 0);
    top->addWidget(listServers, 0, 1);
    top->addWidget(cmdServerList, 0, 2);
    top->addWidget(lblEmail, 1, 0);
    top->addWidget(txtEmail, 1, 1);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdGetTracks, cmdTextSearch, cmdTracklist}) buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(cmdQuit);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(listAlbums, 3);
    layout->addWidget(listTracks, 2);
    layout->addLayout(buttons);
    layout->addWidget(sbStatusBar);
    layout->setContentsMargins(9, 9, 9, 0);
    resize(620, 480);

    Winsock1 = new CddbSocket(this);
    connect(Winsock1, &CddbSocket::Connected, this,
            [this] { run("Winsock1_Connect", [this] { Winsock1_Connect(); }); });
    connect(Winsock1, &CddbSocket::DataArrival, this, [this](const QByteArray &bytes) {
        run("Winsock1_DataArrival", [&] { Winsock1_DataArrival(bytes); });
    });
    connect(Winsock1, &CddbSocket::Closed, this,
            [this] { run("Winsock1_Close", [this] { Winsock1_Close(); }); });
    connect(Winsock1, &CddbSocket::Failed, this,
            [this] { run("Winsock1_Error", [this] { Winsock1_Error(); }); });

    const auto click = [this](QPushButton *b, const char *procedure, void (frmFreeDB::*handler)()) {
        connect(b, &QPushButton::clicked, this,
                [=, this] { run(procedure, [=, this] { (this->*handler)(); }); });
    };
    click(cmdGetTracks, "cmdGetTracks_Click", &frmFreeDB::cmdGetTracks_Click);
    click(cmdServerList, "cmdServerList_Click", &frmFreeDB::cmdServerList_Click);
    click(cmdTextSearch, "cmdTextSearch_Click", &frmFreeDB::cmdTextSearch_Click);
    click(cmdTracklist, "cmdTracklist_Click", &frmFreeDB::cmdTracklist_Click);
    click(cmdQuit, "cmdQuit_Click", &frmFreeDB::cmdQuit_Click);
    connect(listAlbums, &QTreeWidget::itemDoubleClicked, this,
            [this] { run("listAlbums_DblClick", [this] { cmdGetTracks_Click(); }); });
    connect(listAlbums, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem *item) { state.selectedAlbum = listAlbums->indexOfTopLevelItem(item); });
    connect(listServers, &QComboBox::activated, this,
            [this](int index) { run("listServers_Click", [=, this] { listServers_Click(index); }); });
    connect(txtEmail, &QLineEdit::textEdited, this, [this](const QString &text) {
        settings_.strFreedbEmail = text.toStdString();
        storeSettings();
    });

    if (host_.loadSettings) settings_ = host_.loadSettings();
    state.strServerList = settings_.strServerList;
    state.listServers = cddb::serverEntries(settings_.strServerList);
    state.selectedServer = settings_.intServer >= 0 && settings_.intServer < int(state.listServers.size())
                               ? settings_.intServer
                               : 0;
    txtEmail->setText(q(settings_.strFreedbEmail));
    if (host_.applyLanguage) host_.applyLanguage(this);
    designGetTracks_ = cmdGetTracks->text();
    designQuit_ = cmdQuit->text();
    enableControls(true);
    showServers();
    showLists();
}

frmFreeDB::~frmFreeDB() = default;

void frmFreeDB::run(const char *procedure, const std::function<void()> &handler) {
    if (!host_.errors) return handler();
    guard(*host_.errors, "frmFreeDB", procedure, handler, [this] {
        if (host_.terminate) host_.terminate();
    });
}

void frmFreeDB::status(int panel, const std::string &text) {
    sbPanel[panel - 1]->setText(q(text));
}

std::optional<cddb::ResultTable> frmFreeDB::QueryFreedb(const std::vector<long> &lengthsMs) {
    state.cddbTrackLengths = lengthsMs;
    state.cddbLengthMode = false;
    maxTracks_ = lengthsMs.empty() ? 0 : lengthsMs.size() - 1;
    exec();
    return cddbResult;
}

std::optional<FreedbLengths> frmFreeDB::GetTrackLengths() {
    state.cddbLengthMode = true;
    exec();
    if (!cddbResult) return std::nullopt;
    return FreedbLengths{trackLengths, *cddbResult};
}

void frmFreeDB::showEvent(QShowEvent *event) {
    QDialog::showEvent(event);
    if (activated_) return;
    activated_ = true;
    QTimer::singleShot(0, this, [this] { run("Form_Activate", [this] { getCDDBInfo(); }); });
}

void frmFreeDB::enableControls(bool enable) {
    for (QWidget *w : findChildren<QWidget *>())
        if (w->property("tag").toString() == QLatin1String("tagged")) w->setEnabled(enable);
    // Names can be taken once an entry is in.
    cmdTracklist->setEnabled(enable && state.entryRead);
    quitCaption_ = !enable;
    cmdQuit->setText(enable ? designQuit_ : q(host_.text("msgFreedbQuit")));
}

void frmFreeDB::getCDDBInfo() {
    if (state.cddbBusy) return;
    if (state.cddbLengthMode) return cmdTextSearch_Click();
    const auto query = cddb::discQuery(state.cddbTrackLengths);
    if (!query) return;
    state.cddbBusy = true;
    enableControls(false);
    status(2, "DiscID: " + query->discId);
    state.cddbQuery = query->query;
    startSession(Session::Query);
}

void frmFreeDB::cmdGetTracks_Click() {
    if (!state.albumsListed) {
        state.listAlbums.clear();
        showLists();
        return getCDDBInfo();
    }
    if (state.listAlbums.empty()) return getCDDBInfo();
    const int row = state.selectedAlbum;
    if (row < 0 || row >= int(state.listAlbums.size()) || state.listAlbums[std::size_t(row)].discId.empty())
        return;
    enableControls(false);
    state.cddbEntry.clear();
    state.listTracks.clear();
    state.cddbArtist.clear();
    state.cddbTitle.clear();
    state.cddbSplit = false;
    state.entryRead = false;
    state.cddbReading = true;
    showLists();
    startSession(Session::Read);
}

void frmFreeDB::cmdServerList_Click() {
    state.cddbSites = true;
    enableControls(false);
    startSession(Session::Sites);
}

void frmFreeDB::cmdTextSearch_Click() {
    if (!host_.dialogs) return;
    const auto words =
        host_.dialogs->inputBox(host_.text("msgFreedbTextSearch"), windowTitle().toStdString(), "");
    if (!words || words->empty()) return;
    enableControls(false);
    state.listAlbums.clear();
    state.webBuffer.clear();
    showLists();
    state.cddbWeb = true;
    webUrl_ = cddb::webSearchUrl(cddb::searchSite(settings_.strSearchSite), *words);
    startSession(Session::Web);
}

void frmFreeDB::cmdTracklist_Click() {
    if (state.cddbLengthMode) trackLengths = cddb::entryTrackLengths(state.cddbEntry);
    if (state.entryRead) cddbResult = cddb::tracklist(state, maxTracks_);
    done(Accepted);
}

void frmFreeDB::cmdQuit_Click() {
    if (!quitCaption_) {
        done(Rejected);
        return;
    }
    endSession("msgUserQuit");
}

void frmFreeDB::reject() {
    if (session_ != Session::None) endSession("msgUserQuit");
    done(Rejected);
}

void frmFreeDB::listServers_Click(int index) {
    status(1, host_.text("msgServer") + listServers->itemText(index).toStdString());
    state.selectedServer = index;
    storeSettings();
}

void frmFreeDB::rememberServer() {
    const std::string typed = vb::Trim(listServers->currentText().toStdString());
    if (typed.empty()) return;
    const auto known = std::find(state.listServers.begin(), state.listServers.end(), typed);
    state.selectedServer = int(known - state.listServers.begin());
    if (known == state.listServers.end()) {
        state.listServers.push_back(typed);
        state.strServerList = vb::Join(state.listServers, "|") + "|";
    }
    showServers();
    storeSettings();
}

void frmFreeDB::storeSettings() {
    settings_.strServerList = state.strServerList;
    settings_.intServer = state.selectedServer;
    if (host_.saveSettings) host_.saveSettings(settings_);
}

void frmFreeDB::startSession(Session kind) {
    status(3, host_.text("msgConnecting"));
    rememberServer();
    session_ = kind;
    state.cddbDone = false;
    state.cddbBytes = 0;
    state.replies.clear();
    if (kind == Session::Web) {
        const auto site = cddb::siteAddress(cddb::searchSite(settings_.strSearchSite));
        overHttp_ = false;
        return Winsock1->Connect(site.host, site.port);
    }
    const cddb::Endpoint server = cddb::serverEndpoint(listServers->currentText().toStdString());
    overHttp_ = server.http;
    if (!server.http) return Winsock1->Connect(server.host, server.port);
    Winsock1->Get(cddb::cgiUrl(server.url, cddb::sessionCommand(state), helloWords()));
}

void frmFreeDB::Winsock1_Connect() {
    status(3, host_.text("msgConnected"));
    state.cddbBytes = 0;
    if (session_ == Session::Web) {
        Winsock1->SendData(cddb::webRequest(webUrl_, cddb::searchSite(settings_.strSearchSite)));
    } else if (!overHttp_) {
        Winsock1->SendData(cddb::greeting(helloWords()));
    }
}

// An empty address becomes the placeholder of the machine's own name, which
// the user then sees in the field.
std::string frmFreeDB::helloWords() {
    const std::string words =
        cddb::helloWords(settings_.strFreedbEmail, Winsock1->LocalHostName(), Winsock1->LocalIP());
    txtEmail->setText(q(settings_.strFreedbEmail));
    storeSettings();
    return words;
}

void frmFreeDB::Winsock1_DataArrival(const QByteArray &bytes) {
    if (session_ == Session::None) return;
    const cddb::Reaction r =
        cddb::dataArrival(state, std::string_view(bytes.constData(), std::size_t(bytes.size())));
    status(3, host_.text("msgRecieving") + std::to_string(state.cddbBytes) + host_.text("msgBytes"));
    apply(r);
}

void frmFreeDB::Winsock1_Close() {
    if (session_ == Session::None) return;
    apply(cddb::connectionClosed(state));
    endSession("msgConnectionClosed");
}

void frmFreeDB::Winsock1_Error() {
    endSession("msgConnectionError");
}

void frmFreeDB::apply(const cddb::Reaction &r) {
    if (r.overflow) return endSession("msgConnectionError");
    for (const std::string &text : r.send) Winsock1->SendData(text);
    showLists();
    if (r.askSplit) QTimer::singleShot(0, this, [this] { run("askSplit", [this] { askSplit(); }); });
    if (r.sitesIn) {
        showServers();
        storeSettings();
        endSession("msgConnectionClosed");
    } else if (r.webComplete) {
        endSession("msgConnectionClosed");
    }
}

void frmFreeDB::askSplit() {
    const std::string question =
        host_.text("msgSplitTrackNames") + "\"" + host_.text("msgArtistTitle") + "\"";
    state.cddbSplit =
        host_.dialogs && host_.dialogs->MsgBoxOverMe(question, platform::mb::Question | platform::mb::YesNo,
                                                     windowTitle().toStdString()) == platform::mb::Yes;
}

// Every end of a session comes here, once: the socket is closed and the
// controls are given back, with the word of the end in panel 3.
void frmFreeDB::endSession(const char *word) {
    const Session kind = std::exchange(session_, Session::None);
    if (kind == Session::None) return;
    Winsock1->Close();
    state.cddbDone = true;
    state.replies.clear();
    status(3, host_.text(word));
    if (kind == Session::Query) state.cddbBusy = false;
    if (kind == Session::Read) state.cddbReading = false;
    if (kind == Session::Sites) state.cddbSites = false;
    if (kind == Session::Web) {
        state.listAlbums = cddb::parseSearchPage(state.webBuffer, cddb::searchSite(settings_.strSearchSite));
        state.webBuffer.clear();
        state.albumsListed = state.albumsListed || !state.listAlbums.empty();
        state.selectedAlbum = state.listAlbums.empty() ? -1 : 0;
        state.cddbWeb = false;
    }
    enableControls(true);
    showLists();
}

void frmFreeDB::showServers() {
    listServers->clear();
    for (const std::string &server : state.listServers) listServers->addItem(q(server));
    listServers->setCurrentIndex(state.selectedServer);
    status(1, host_.text("msgServer") + listServers->currentText().toStdString());
}

void frmFreeDB::showLists() {
    if (listAlbums->topLevelItemCount() > int(state.listAlbums.size())) listAlbums->clear();
    QList<QTreeWidgetItem *> rows;
    for (std::size_t i = std::size_t(listAlbums->topLevelItemCount()); i < state.listAlbums.size(); ++i) {
        const cddb::AlbumRow &row = state.listAlbums[i];
        rows.append(new QTreeWidgetItem(QStringList{q(row.discId), q(row.category), q(row.title)}));
    }
    listAlbums->addTopLevelItems(rows);
    if (state.selectedAlbum >= 0 && state.selectedAlbum < listAlbums->topLevelItemCount())
        listAlbums->setCurrentItem(listAlbums->topLevelItem(state.selectedAlbum));

    if (listTracks->count() > int(state.listTracks.size())) listTracks->clear();
    for (std::size_t i = std::size_t(listTracks->count()); i < state.listTracks.size(); ++i)
        listTracks->addItem(q(state.listTracks[i]));

    cmdGetTracks->setText(state.albumsListed ? q(host_.text("msgFreedbGetTracks")) : designGetTracks_);
}

std::optional<cddb::ResultTable> QueryFreedb(const FreedbHost &host, const std::vector<long> &lengthsMs,
                                             QWidget *owner) {
    frmFreeDB form(host, owner);
    return form.QueryFreedb(lengthsMs);
}

std::optional<FreedbLengths> GetTrackLengths(const FreedbHost &host, QWidget *owner) {
    frmFreeDB form(host, owner);
    return form.GetTrackLengths();
}

}  // namespace saltmarrow
