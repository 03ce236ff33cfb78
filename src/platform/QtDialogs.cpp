#include "platform/QtDialogs.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/Sounds.h"

namespace saltmarrow::platform {

namespace {
QString q(const std::string &s) {
    return QString::fromStdString(s);
}

// Qt's own file dialog reads quotes in the name field as a list of names
// ("a" "b"), so a name typed with a quote in it would be cut up or lost. This
// one takes such a name as it stands, in the folder shown: for saving it asks
// before replacing a file as the dialog does itself; for opening, the file has
// to be there (otherwise the quotes are the list they look like).
class NameDialog : public QFileDialog {
public:
    using QFileDialog::QFileDialog;
    QString typed;

    void accept() override {
        const auto *edit = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        const QString text = edit ? edit->text() : QString();
        if (!text.contains('"')) {
            QFileDialog::accept();
            return;
        }
        const QFileInfo file(directory().absoluteFilePath(text));
        if (file.isDir()) {
            setDirectory(file.absoluteFilePath());
            return;
        }
        if (acceptMode() == AcceptOpen) {
            if (!file.isFile()) {
                QFileDialog::accept();
                return;
            }
        } else if (file.exists() &&
                   QMessageBox::warning(
                       this, windowTitle(),
                       QFileDialog::tr("%1 already exists.\nDo you want to replace it?").arg(file.fileName()),
                       QMessageBox::Yes | QMessageBox::No, QMessageBox::No) != QMessageBox::Yes)
            return;
        typed = file.absoluteFilePath();
        QDialog::accept();
    }
};
}  // namespace

QString qtFilter(const std::string &filter) {
    QStringList parts = q(filter).split('|');
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString name = parts[i];
        QString patterns = parts[i + 1];
        patterns.replace(';', ' ');
        int paren = name.indexOf('(');
        if (paren >= 0) name = name.left(paren).trimmed();
        out << QStringLiteral("%1 (%2)").arg(name, patterns);
    }
    return out.join(QStringLiteral(";;"));
}

int QtDialogs::MsgBoxOverMe(const std::string &text, int style, const std::string &title) {
    QMessageBox box(owner_);
    box.setWindowTitle(title.empty() ? QApplication::applicationDisplayName() : q(title));
    box.setText(q(text).replace(QLatin1String("\r\n"), QLatin1String("\n")));
    switch (style & 0x70) {
        case mb::Critical:
            box.setIcon(QMessageBox::Critical);
            break;
        case mb::Question:
            box.setIcon(QMessageBox::Question);
            break;
        case mb::Exclamation:
            box.setIcon(QMessageBox::Warning);
            break;
        case mb::Information:
            box.setIcon(QMessageBox::Information);
            break;
        default:
            break;
    }
    switch (style & 0x7) {
        case mb::OKCancel:
            box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
            break;
        case mb::YesNoCancel:
            box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
            break;
        case mb::YesNo:
            box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
            break;
        default:
            box.setStandardButtons(QMessageBox::Ok);
            break;
    }
    switch (box.exec()) {
        case QMessageBox::Ok:
            return mb::OK;
        case QMessageBox::Yes:
            return mb::Yes;
        case QMessageBox::No:
            return mb::No;
        default:
            return mb::Cancel;
    }
}

std::optional<std::vector<std::string>> QtDialogs::openFile(const FileRequest &request) {
    NameDialog dialog(owner_, q(request.title), q(request.folder), qtFilter(request.filter));
    dialog.setFileMode(request.multiSelect ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    if (!request.fileName.empty()) dialog.selectFile(q(request.fileName));
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    if (!dialog.typed.isEmpty()) return std::vector<std::string>{dialog.typed.toStdString()};
    if (dialog.selectedFiles().isEmpty()) return std::nullopt;
    std::vector<std::string> files;
    for (const QString &f : dialog.selectedFiles()) files.push_back(f.toStdString());
    return files;
}

std::optional<std::string> QtDialogs::saveFile(const FileRequest &request) {
    NameDialog dialog(owner_, q(request.title), q(request.folder), qtFilter(request.filter));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    if (!request.fileName.empty()) dialog.selectFile(q(request.fileName));
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    QString file = dialog.typed;
    if (file.isEmpty() && !dialog.selectedFiles().isEmpty()) file = dialog.selectedFiles().first();
    if (file.isEmpty()) return std::nullopt;
    return file.toStdString();
}

std::optional<FolderChoice> QtDialogs::browseFolder(const std::string &title, const std::string &folder,
                                                    const std::string &checkBoxCaption, bool checked) {
    QFileDialog dialog(owner_, q(title), q(folder));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    QCheckBox *box = nullptr;
    if (!checkBoxCaption.empty()) {
        box = new QCheckBox(q(checkBoxCaption), &dialog);
        box->setChecked(checked);
        if (auto *grid = dialog.layout()) grid->addWidget(box);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return FolderChoice{dialog.selectedFiles().first().toStdString(), box && box->isChecked()};
}

std::optional<std::string> QtDialogs::inputBox(const std::string &prompt, const std::string &title,
                                               const std::string &defaultText) {
    bool ok = false;
    QString text = QInputDialog::getText(owner_, q(title), q(prompt), QLineEdit::Normal, q(defaultText), &ok);
    if (!ok) return std::nullopt;
    return text.toStdString();
}

std::optional<FontChoice> QtDialogs::chooseFont(const FontChoice &current) {
    bool ok = false;
    QFont font(q(current.name), current.size > 0 ? current.size : 9);
    QFont chosen = QFontDialog::getFont(&ok, font, owner_, QString(), QFontDialog::MonospacedFonts);
    if (!ok) return std::nullopt;
    return FontChoice{chosen.family().toStdString(), chosen.pointSize()};
}

void BeepSounds::play(const std::string &, bool) {
    QApplication::beep();
}

}  // namespace saltmarrow::platform
