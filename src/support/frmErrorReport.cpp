#include "support/frmErrorReport.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace saltmarrow {

frmErrorReport::frmErrorReport(const std::string &heading, const std::string &details, QWidget *parent)
    : QDialog(parent) {
    setObjectName("frmErrorReport");
    setWindowTitle(QStringLiteral("saltmarrow - Error"));
    setModal(true);
    lblErrorReport = new QLabel(QString::fromStdString(heading).replace("\r\n", "\n"), this);
    lblErrorReport->setObjectName("lblErrorReport");
    lblErrorReport->setWordWrap(true);
    txtErrorDetails = new QPlainTextEdit(QString::fromStdString(details).replace("\r\n", "\n"), this);
    txtErrorDetails->setObjectName("txtErrorDetails");
    txtErrorDetails->setReadOnly(true);
    txtErrorDetails->setLineWrapMode(QPlainTextEdit::NoWrap);
    cmdCopy = new QPushButton(tr("&Copy"), this);
    cmdCopy->setObjectName("cmdCopy");
    cmdIgnore = new QPushButton(tr("&Ignore"), this);
    cmdIgnore->setObjectName("cmdIgnore");
    cmdTerminate = new QPushButton(tr("&Terminate"), this);
    cmdTerminate->setObjectName("cmdTerminate");

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdCopy);
    buttons->addStretch();
    buttons->addWidget(cmdIgnore);
    buttons->addWidget(cmdTerminate);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblErrorReport);
    layout->addWidget(txtErrorDetails);
    layout->addLayout(buttons);
    resize(480, 240);

    connect(cmdCopy, &QPushButton::clicked, this, [this] {
        QClipboard *clip = QGuiApplication::clipboard();
        clip->clear();
        clip->setText(txtErrorDetails->toPlainText());
    });
    connect(cmdIgnore, &QPushButton::clicked, this, [this] {
        goOn_ = true;
        accept();
    });
    connect(cmdTerminate, &QPushButton::clicked, this, [this] {
        goOn_ = false;
        reject();
    });
    cmdIgnore->setDefault(true);
}

QtErrorReporter::QtErrorReporter(std::function<void()> playHand, std::function<std::string()> heading,
                                 std::string appVersion, std::string platformVersion, QWidget *owner)
    : playHand_(std::move(playHand)),
      heading_(std::move(heading)),
      appVersion_(std::move(appVersion)),
      platformVersion_(std::move(platformVersion)),
      owner_(owner) {}

bool QtErrorReporter::ErrorReport(int number, const std::string &description, const std::string &module,
                                  const std::string &procedure, int line) {
    // An error while the report is up is not reported again.
    if (showing_) return true;
    showing_ = true;
    bool goOn = true;
    try {
        if (playHand_) playHand_();
        frmErrorReport dialog(
            heading_ ? heading_() : std::string(),
            errorReportText(number, description, module, procedure, line, appVersion_, platformVersion_),
            owner_);
        dialog.raise();
        dialog.exec();
        goOn = dialog.goOn();
    } catch (...) {
        goOn = true;
    }
    showing_ = false;
    return goOn;
}

}  // namespace saltmarrow
