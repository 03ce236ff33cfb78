#ifndef SALTMARROW_CDDB_FRMFREEDB_H
#define SALTMARROW_CDDB_FRMFREEDB_H

#include <QDialog>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cddb/CddbResult.h"
#include "cddb/CddbSession.h"
#include "cddb/FreedbHost.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QStatusBar;
class QTreeWidget;

namespace saltmarrow {

class CddbSocket;

// The lengths of an entry found by words, and its names.
struct FreedbLengths {
    std::vector<std::string> lengths;  // "mm:ss:ff", one a track
    cddb::ResultTable names;
};

// Finds the names of a disc in a disc database: by the lengths of its tracks,
// or by words through the database's web site. Every exchange with a server
// is one session, started by a button and ended by the server's close, an
// error, or Quit; while one runs, only Quit can be used.
class frmFreeDB : public QDialog {
    Q_OBJECT
public:
    explicit frmFreeDB(FreedbHost host, QWidget *owner = nullptr);
    ~frmFreeDB() override;

    // Shows the dialog modally and asks for the disc of these lengths ([0] the
    // lead-in, then one a track, in ms). Names only once an entry was read and
    // taken; rows past the tracks asked for are left out.
    std::optional<cddb::ResultTable> QueryFreedb(const std::vector<long> &lengthsMs);
    // Shows the dialog modally to find an entry by words.
    std::optional<FreedbLengths> GetTrackLengths();

    void getCDDBInfo();
    void cmdGetTracks_Click();
    void cmdServerList_Click();
    void cmdTextSearch_Click();
    void cmdTracklist_Click();
    void cmdQuit_Click();
    void listServers_Click(int index);
    void enableControls(bool enable);

    cddb::FreedbState state;
    std::optional<cddb::ResultTable> cddbResult;
    std::vector<std::string> trackLengths;  // of the entry, in length mode

    QLabel *lblServer, *lblEmail;
    QComboBox *listServers;
    QLineEdit *txtEmail;
    QPushButton *cmdServerList;
    QTreeWidget *listAlbums;
    QListWidget *listTracks;
    QPushButton *cmdGetTracks, *cmdTextSearch, *cmdTracklist, *cmdQuit;
    QStatusBar *sbStatusBar;
    QLabel *sbPanel[3];
    CddbSocket *Winsock1;

    // Escape and the close box: Quit, then the dialog closes.
    void reject() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    enum class Session { None, Query, Read, Sites, Web };
    void startSession(Session kind);
    void Winsock1_Connect();
    void Winsock1_DataArrival(const QByteArray &bytes);
    void Winsock1_Close();
    void Winsock1_Error();
    void apply(const cddb::Reaction &r);
    void endSession(const char *word);
    void askSplit();
    std::string helloWords();
    void showLists();
    void showServers();
    void rememberServer();
    void storeSettings();
    void status(int panel, const std::string &text);
    void run(const char *procedure, const std::function<void()> &handler);

    FreedbHost host_;
    FreedbSettings settings_;
    Session session_ = Session::None;
    bool activated_ = false;
    bool quitCaption_ = false;  // cmdQuit reads "msgFreedbQuit"
    bool overHttp_ = false;     // the session is a GET of the database's CGI
    std::string webUrl_;
    std::size_t maxTracks_ = SIZE_MAX;  // the tracks asked for; more names are not handed back
    QString designGetTracks_, designQuit_;
};

// The dialog for one query, gone when it returns.
std::optional<cddb::ResultTable> QueryFreedb(const FreedbHost &host, const std::vector<long> &lengthsMs,
                                             QWidget *owner = nullptr);
std::optional<FreedbLengths> GetTrackLengths(const FreedbHost &host, QWidget *owner = nullptr);

}  // namespace saltmarrow

#endif
