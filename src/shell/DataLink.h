#ifndef SALTMARROW_SHELL_DATALINK_H
#define SALTMARROW_SHELL_DATALINK_H

#include <QPointer>
#include <memory>

#include "data/frmDataCD.h"
#include "platform/QtDialogs.h"
#include "shell/frmMain.h"

namespace saltmarrow {

// The data form as the main window owns it: the three entries of the
// mastering menu open it in their kind, and its host is made of the main
// window's messages, settings, dialogs and language.
class DataLink {
public:
    DataLink(frmMain &main, const ShellEnvironment &env);

    void newDataJob(bool isDVD, bool isVideo);
    frmDataCD *form() const { return form_; }

private:
    DataFormHost formHost();
    // The project goes to the main window, which writes it with writeDataCD.
    // cmdWrite for a data disc, or for an ISO on a DVD.
    void writeData(bool image);
    void handOver(const discops::DataDisc &disc, const std::string &label, bool autoWrite);
    void guard(const char *procedure, const std::function<void()> &handler);

    frmMain &main_;
    ShellEnvironment env_;
    QPointer<frmDataCD> form_;
    // The real dialogs of the data form stand over it, not over the main window.
    std::unique_ptr<platform::QtDialogs> formDialogs_;
};

}  // namespace saltmarrow

#endif
