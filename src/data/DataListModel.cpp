#include "data/DataListModel.h"

namespace saltmarrow {

namespace {
QString q(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}
}  // namespace

DataListModel::DataListModel(const data::DataProject &project, QObject *parent)
    : QAbstractTableModel(parent), project_(project) {}

void DataListModel::showFolder(data::NodeId folder) {
    beginResetModel();
    folder_ = folder;
    rows_ = project_.sortedPositions(folder);
    endResetModel();
}

void DataListModel::setIcons(bool shown) {
    icons_ = shown;
    if (shown && !rows_.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::DecorationRole});
}

void DataListModel::setTitles(const QStringList &titles) {
    titles_ = titles;
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

int DataListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int DataListModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : 3;
}

QVariant DataListModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const auto item = project_.itemAt(folder_, rows_[static_cast<std::size_t>(index.row())]);
    if (!item) return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            if (index.column() == 0) return q(item->Name());
            if (index.column() == 1) return q(data::formatSize(item->Size()));
            return item->isFolder() ? QStringLiteral("0") : QStringLiteral("1");
        case Qt::DecorationRole:
            if (index.column() == 0 && icons_ && iconOf) return iconOf(std::string(item->IconKey()));
            return {};
        case Qt::TextAlignmentRole:
            if (index.column() == 1) return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
            return {};
        case kTagRole:
            return q(item->OrigName());
        default:
            return {};
    }
}

bool DataListModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (role != Qt::EditRole || index.column() != 0 || !rename) return false;
    const QString tag = data(index, kTagRole).toString();
    if (tag.isEmpty() || !rename(tag.toStdString(), value.toString())) return false;
    emit dataChanged(index, index);
    return true;
}

Qt::ItemFlags DataListModel::flags(const QModelIndex &index) const {
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    if (index.isValid() && index.column() == 0) f |= Qt::ItemIsEditable;
    return f;
}

QVariant DataListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= titles_.size())
        return {};
    return titles_.at(section);
}

}  // namespace saltmarrow
