#ifndef SALTMARROW_DATA_DATALISTMODEL_H
#define SALTMARROW_DATA_DATALISTMODEL_H

#include <QAbstractTableModel>
#include <QIcon>
#include <functional>
#include <string>
#include <vector>

#include "data/DataProject.h"

namespace saltmarrow {

// listFiles: the items of one folder, read from the project each time a row
// is painted, so that a folder of any size costs only its visible rows.
// Columns listName, listSize and listType (the sort key: 0 folder, 1 file).
class DataListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int kTagRole = Qt::UserRole;  // the row's Tag: OrigName

    explicit DataListModel(const data::DataProject &project, QObject *parent = nullptr);

    // Shows the folder sorted as updateSize sorts; rows added to it later
    // appear at the next call.
    void showFolder(data::NodeId folder);
    data::NodeId folder() const { return folder_; }
    // While icons are off, rows are painted without them.
    void setIcons(bool shown);
    void setTitles(const QStringList &titles);

    std::function<QIcon(const std::string &iconKey)> iconOf;
    // A label edit of a name; false refuses it.
    std::function<bool(const std::string &origName, const QString &text)> rename;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const data::DataProject &project_;
    data::NodeId folder_ = data::kNoNode;
    std::vector<std::uint32_t> rows_;
    bool icons_ = true;
    QStringList titles_{QStringLiteral("Name"), QStringLiteral("Size"), QStringLiteral("Type")};
};

}  // namespace saltmarrow

#endif
