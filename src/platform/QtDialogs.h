#ifndef SALTMARROW_PLATFORM_QTDIALOGS_H
#define SALTMARROW_PLATFORM_QTDIALOGS_H

#include <QPointer>
#include <QWidget>

#include "platform/Dialogs.h"

namespace saltmarrow::platform {

// The real dialogs, centred over their owner window.
class QtDialogs : public Dialogs {
public:
    explicit QtDialogs(QWidget *owner = nullptr) : owner_(owner) {}
    void setOwner(QWidget *owner) { owner_ = owner; }

    int MsgBoxOverMe(const std::string &text, int style, const std::string &title) override;
    std::optional<std::vector<std::string>> openFile(const FileRequest &request) override;
    std::optional<std::string> saveFile(const FileRequest &request) override;
    std::optional<FolderChoice> browseFolder(const std::string &title, const std::string &folder,
                                             const std::string &checkBoxCaption, bool checked) override;
    std::optional<std::string> inputBox(const std::string &prompt, const std::string &title,
                                        const std::string &defaultText) override;
    std::optional<FontChoice> chooseFont(const FontChoice &current) override;

private:
    QPointer<QWidget> owner_;
};

// "Name (*.a;*.b)|*.a;*.b|Other|*.c" -> Qt's "Name (*.a *.b);;Other (*.c)".
QString qtFilter(const std::string &filter);

}  // namespace saltmarrow::platform

#endif
