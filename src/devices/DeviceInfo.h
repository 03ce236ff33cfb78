#ifndef SALTMARROW_DEVICES_DEVICEINFO_H
#define SALTMARROW_DEVICES_DEVICEINFO_H

#include <string>
#include <string_view>
#include <vector>

namespace saltmarrow {

// One drive, as the scan, the settings file and the drive queries know it.
struct DeviceInfo {
    std::string DeviceName;     // "VENDOR, MODEL": the drive's identity across runs
    std::string SPTIFullName;   // list text for the SPTI layer: address, ": ", name
    std::string ASPIFullName;   // the same for ASPI
    std::string Driver;         // cdrdao driver, empty until looked up or loaded
    std::string DriverOptions;  // hexadecimal option word without "0x"; "0" if none
    bool isWriter = false;
    // isWriter was loaded or learnt: a drive known not to write is not asked again.
    bool isWriterKnown = false;
    std::string ReaderOptions;  // saved read panel of this drive
    std::string WriterOptions;  // saved write panel of this drive
    std::string LastMediaType;
    bool MediaInserted = false;
    std::string WriteSpeeds;    // comma-separated, for cmbSpeed
    std::string ASPIDeviceID;   // "b,t,l"
    std::string SPTIDeviceID;
    std::string Interfaces;     // kept for the record; nothing reads it
    std::string DeviceNumber;   // the key in the table: "1", "2", ... in scan order
    std::string ReadFeatures;
    std::string WriteFeatures;
    std::string OtherFeatures;
    bool BufferProtection = false;
    std::string BufferSize;
    std::string Firmware;
};

// The device table. Keys are "1", "2", ... in scan order; whoever walks it
// addresses the drives by position, and that position is the device index.
class DeviceTable {
public:
    std::size_t Count() const { return items_.size(); }
    bool empty() const { return items_.empty(); }
    DeviceInfo &item(std::size_t index) { return items_.at(index); }
    const DeviceInfo &item(std::size_t index) const { return items_.at(index); }
    std::vector<DeviceInfo> &Items() { return items_; }
    const std::vector<DeviceInfo> &Items() const { return items_; }

    bool Exists(std::string_view key) const { return find(key) != nullptr; }
    DeviceInfo *find(std::string_view key) {
        for (auto &d : items_)
            if (d.DeviceNumber == key) return &d;
        return nullptr;
    }
    const DeviceInfo *find(std::string_view key) const {
        for (const auto &d : items_)
            if (d.DeviceNumber == key) return &d;
        return nullptr;
    }
    // Adds a record under key (its DeviceNumber is set to key).
    DeviceInfo &Add(const std::string &key, DeviceInfo info) {
        info.DeviceNumber = key;
        items_.push_back(std::move(info));
        return items_.back();
    }
    void RemoveAll() { items_.clear(); }

private:
    std::vector<DeviceInfo> items_;
};

}  // namespace saltmarrow

#endif
