#include "shell/LanguageForms.h"

#include <QAbstractButton>
#include <QAction>
#include <QDate>
#include <QGroupBox>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMultiHash>
#include <QVariant>
#include <QWidget>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/AtomicFile.h"

namespace saltmarrow {

namespace {

QString q(const std::string &s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

// Objects Qt creates for its own use inside composite widgets.
bool isOwnControl(const QObject *o) {
    const QString name = o->objectName();
    return !name.isEmpty() && !name.startsWith(QLatin1String("qt_"));
}

// Text boxes (txt...) and status bar panels (sb...) show data, whatever widget
// stands in for them: they have no caption to translate.
bool showsData(const QObject *o) {
    const QString name = o->objectName();
    return name.startsWith(QLatin1String("txt")) || name.startsWith(QLatin1String("sb"));
}

std::optional<int> indexOf(const QObject *o) {
    QVariant v = o->property("index");
    if (!v.isValid()) return std::nullopt;
    bool ok = false;
    int i = v.toInt(&ok);
    return ok ? std::optional<int>(i) : std::nullopt;
}

// The objects of form itself, without those of the windows it owns (the
// log, the dialogs): each of those is a form with a section of its own. Its
// menus are windows too, but its own.
template <typename Visit>
void forEachOwnObject(const QObject *parent, const Visit &visit) {
    for (QObject *o : parent->children()) {
        if (auto *w = qobject_cast<QWidget *>(o); w && w->isWindow() && !qobject_cast<QMenu *>(w)) continue;
        if (isOwnControl(o)) visit(o);
        forEachOwnObject(o, visit);
    }
}

// The controls of form that a caption line or a tool tip row names.
QMultiHash<QString, QObject *> controlsByName(QWidget *form) {
    QMultiHash<QString, QObject *> byName;
    forEachOwnObject(form, [&](QObject *o) { byName.insert(o->objectName(), o); });
    return byName;
}

std::vector<QObject *> matching(const QMultiHash<QString, QObject *> &byName, const QString &name,
                                std::optional<int> index) {
    std::vector<QObject *> found;
    for (auto it = byName.constFind(name); it != byName.cend() && it.key() == name; ++it)
        if (!index || indexOf(it.value()) == index) found.push_back(it.value());
    return found;
}

}  // namespace

bool controlCaption(const QObject *control, QString &caption) {
    if (showsData(control)) return false;
    if (auto *b = qobject_cast<const QAbstractButton *>(control))
        caption = b->text();
    else if (auto *l = qobject_cast<const QLabel *>(control))
        caption = l->text();
    else if (auto *g = qobject_cast<const QGroupBox *>(control))
        caption = g->title();
    else if (auto *m = qobject_cast<const QMenu *>(control))
        caption = m->title();
    else if (auto *a = qobject_cast<const QAction *>(control))
        caption = a->text();
    else
        return false;
    return true;
}

bool setControlCaption(QObject *control, const QString &caption) {
    if (showsData(control)) return false;
    if (auto *b = qobject_cast<QAbstractButton *>(control))
        b->setText(caption);
    else if (auto *l = qobject_cast<QLabel *>(control))
        l->setText(caption);
    else if (auto *g = qobject_cast<QGroupBox *>(control))
        g->setTitle(caption);
    else if (auto *m = qobject_cast<QMenu *>(control))
        m->setTitle(caption);
    else if (auto *a = qobject_cast<QAction *>(control))
        a->setText(caption);
    else
        return false;
    return true;
}

bool applyLanguage(QWidget *form, bool messagesToo, const std::string &language, MessageTable &messages,
                   const std::string &appDir) {
    std::ifstream in(languagePath(appDir, language), std::ios::binary);
    if (!in) return false;
    std::ostringstream bytes;
    bytes << in.rdbuf();

    LanguageSection section = readLanguage(bytes.str(), form->objectName().toStdString(), messagesToo);
    for (auto &[key, text] : section.messages) messages.set(key, std::move(text));
    if (section.formCaption) form->setWindowTitle(q(*section.formCaption));

    const auto byName = controlsByName(form);
    for (const CaptionLine &line : section.captions) {
        const QString caption = q(line.caption);
        // A named control without a caption is passed over; the next line goes on.
        for (QObject *control : matching(byName, q(line.control), line.index))
            setControlCaption(control, caption);
    }
    return true;
}

std::string systemLanguageName() {
    return QLocale::languageToString(QLocale::system().language()).toStdString();
}

std::string startLanguage(QWidget *mainForm, Settings &settings, MessageTable &messages,
                          const std::string &appDir, const std::string &systemLanguage) {
    messages.fillDefaults();
    std::string language = settings.text("Language");
    if (language.empty()) language = systemLanguage;
    if (language != kEnglish && !applyLanguage(mainForm, true, language, messages, appDir))
        language = std::string(kEnglish);
    settings.setText("Language", language);
    return language;
}

void enableTooltips(QWidget *form, bool shown, const MessageTable &messages,
                    std::span<const TooltipRow> rows) {
    const auto byName = controlsByName(form);
    for (const TooltipRow &row : rows) {
        std::optional<int> index = row.index ? std::optional<int>(row.index) : std::nullopt;
        const QString tip = shown ? q(messages.text(row.key)) : QString();
        for (QObject *o : matching(byName, q(std::string(row.control)), index)) {
            if (auto *w = qobject_cast<QWidget *>(o))
                w->setToolTip(tip);
            else if (auto *a = qobject_cast<QAction *>(o))
                a->setToolTip(tip);
        }
    }
}

FormCaptions collectCaptions(const QWidget *form) {
    FormCaptions captions;
    captions.formName = form->objectName().toStdString();
    captions.caption = form->windowTitle().toStdString();
    forEachOwnObject(form, [&](const QObject *o) {
        QString text;
        if (controlCaption(o, text))
            captions.controls.push_back({o->objectName().toStdString(), indexOf(o), text.toStdString()});
    });
    return captions;
}

void writeLanguageTemplate(const std::string &appDir, const std::string &name,
                           const std::vector<QWidget *> &forms, const MessageTable &messages,
                           const std::string &version) {
    std::vector<FormCaptions> captions;
    for (const QWidget *form : forms) captions.push_back(collectCaptions(form));
    const std::string date =
        QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat).toStdString();
    const std::string path = languagePath(appDir, name);
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ec);
    replaceFileAtomically(path, composeLanguageTemplate(name, date, version, messages, captions));
}

}  // namespace saltmarrow
