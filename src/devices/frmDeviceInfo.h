#ifndef SALTMARROW_DEVICES_FRMDEVICEINFO_H
#define SALTMARROW_DEVICES_FRMDEVICEINFO_H

#include <QDialog>
#include <functional>
#include <string>
#include <vector>

#include "devices/DeviceHost.h"
#include "exec/DOSOutputs.h"

class QCheckBox;
class QFontMetrics;
class QLabel;
class QPushButton;
class QTabWidget;

namespace saltmarrow {

// What the dialog reads of the main form at the moment it asks the drive.
struct DeviceInfoSources {
    std::function<std::string()> writerDevice;  // the writer's device and driver arguments, as they stand
    std::function<double()> discFreeBytes;      // shown for a DVD, whose room cdrdao cannot tell
};

// What a drive is and what is in it, on two tabs. Nothing here can be
// changed: the check boxes only show. The disc query runs through the
// dialog's own objDOS, so the main form's runner and log are left alone.
class frmDeviceInfo : public QDialog {
    Q_OBJECT
public:
    frmDeviceInfo(DeviceState &state, const DeviceHost &host, DeviceInfoSources sources,
                  QWidget *owner = nullptr);
    ~frmDeviceInfo() override;

    // Both tabs for the drive at index (position in the device table).
    void ShowDeviceInfo(int index);
    // The "Media" tab again: asks the drive about its disc unless it holds a DVD.
    void MediaInfo(int index);

    // Puts the dialog beside mainForm, where it does not cover it, and shows it.
    void showBeside(QWidget *mainForm);

    DOSOutputs objDOS;

    QTabWidget *TabStrip1;
    QWidget *tabDeviceInfoTab;
    QWidget *tabMediaInfoTab;
    QLabel *lblType, *lblTypeValue;
    QLabel *lblFirmware, *lblFirmwareValue;
    QLabel *lblDriver, *lblDriverValue;
    QLabel *lblBuffer, *lblBufferValue;
    QLabel *lblManufacturer, *lblManufacturerValue;
    QLabel *lblCapacity, *lblCapacityValue;
    QLabel *lblTOCType, *lblTOCTypeValue;
    QLabel *lblSessions, *lblSessionsValue;
    QLabel *lblTracks, *lblTracksValue;
    QLabel *lblWriteSpeed, *lblWriteSpeedValue;
    std::vector<QCheckBox *> chkReadFeature;
    std::vector<QCheckBox *> chkWriteFeature;
    std::vector<QCheckBox *> chkMedia;
    QPushButton *cmdClose;

    // The full speed list; lblWriteSpeedValue shows as much of it as fits.
    const QString &writeSpeeds() const { return writeSpeeds_; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void objDOS_ReceiveOutputs(const std::string &line);
    void fitWriteSpeeds();

    DeviceState &state_;
    const DeviceHost &host_;
    DeviceInfoSources sources_;
    QString writeSpeeds_;
};

// The longest head of a ", "-separated list that fits width pixels with
// "..." behind it (whole items where possible); the list itself if it fits.
QString cutToFit(const QString &list, const QFontMetrics &metrics, int width);

}  // namespace saltmarrow

#endif
