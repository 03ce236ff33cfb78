#include <QApplication>
#include <QLabel>

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("saltmarrow"));
    QLabel window(QStringLiteral("saltmarrow"));
    window.setWindowTitle(QStringLiteral("saltmarrow"));
    window.show();
    return QApplication::exec();
}
