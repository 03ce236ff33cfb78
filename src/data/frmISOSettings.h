#ifndef SALTMARROW_DATA_FRMISOSETTINGS_H
#define SALTMARROW_DATA_FRMISOSETTINGS_H

#include <QDialog>
#include <array>
#include <functional>
#include <string>

#include "data/DataHost.h"
#include "data/IsoSettings.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace saltmarrow {

// "ISO Settings": every option of the image a data project becomes. It stays
// loaded with its project; closing it only hides it, so that its values are
// there when the image is made.
class frmISOSettings : public QDialog {
    Q_OBJECT
public:
    explicit frmISOSettings(const data::DataHost &host, QWidget *owner = nullptr);

    // The switches of the kind of project: DVD or CD column, DVD-Video fixed.
    void loadSettings(bool blnDVD, bool blnDVDVideo);
    void saveSettings();
    // What the image is made with.
    data::IsoSettings snapshot() const;
    std::string label() const;
    void setLabel(const std::string &label);
    bool compliantPVD() const;
    void enableTooltips(bool shown);

    // OK: the root of the project takes the label.
    std::function<void(const std::string &label)> onLabel;

    QLineEdit *field(data::IsoField f) const { return fields_[static_cast<std::size_t>(f)]; }
    QCheckBox *box(data::IsoBox b) const { return boxes_[static_cast<std::size_t>(b)]; }
    QLineEdit *txtLabel;
    QCheckBox *chkCompliantPVD;
    QLineEdit *txtBootImage;
    QPushButton *cmdBootImage, *cmdClear, *cmdOK;

    void cmdOK_Click();
    void cmdClear_Click();
    void cmdBootImage_Click();
    void box_Click(data::IsoBox box);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showControls();
    void leave(data::IsoField f);

    const data::DataHost &host_;
    data::IsoControls controls_;
    std::array<QLineEdit *, data::kIsoFieldCount> fields_{};
    std::array<QLabel *, data::kIsoFieldCount> labels_{};
    std::array<QCheckBox *, data::kIsoBoxCount> boxes_{};
    bool blnDVD_ = false, blnDVDVideo_ = false;
};

}  // namespace saltmarrow

#endif
