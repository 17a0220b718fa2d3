#include "grid/cell_table.h"

#include <bit>
#include <cmath>

#include "base/fault.h"

namespace hl {

CellTable::CellTable(std::span<const CellSpec> cells) : specs_(cells) {
    const auto place = [](auto& columns) {
        columns.emplace_back();
        return static_cast<std::uint16_t>(columns.size() - 1);
    };
    for (const CellSpec& spec : cells) {
        const std::size_t bytes = cellBytes(spec.type);
        const std::uint16_t slot = spec.onDemand ? place(onDemand_)
                                   : bytes == 8  ? place(wide_)
                                   : bytes == 4  ? place(medium_)
                                   : bytes == 2  ? place(narrow_)
                                                 : place(tiny_);
        stores_.push_back({spec.type, spec.onDemand, slot});
    }
}

CellId CellTable::find(std::string_view key) const {
    for (std::size_t i = 0; i < specs_.size(); ++i)
        if (specs_[i].key == key) return static_cast<CellId>(i);
    return kNoCell;
}

bool CellTable::isText(CellId cell) const {
    return cell < stores_.size() && stores_[cell].type == CellType::kText;
}

bool CellTable::isDate(CellId cell) const {
    return cell < stores_.size() && stores_[cell].type == CellType::kDate;
}

bool CellTable::isSize(CellId cell) const {
    return cell < stores_.size() && stores_[cell].type == CellType::kSize;
}

void CellTable::addRow(Row row) {
    const auto renew = [row](auto& columns) {
        for (auto& column : columns) {
            column.ensure(row);
            column[row] = {};
        }
    };
    renew(wide_);
    renew(medium_);
    renew(narrow_);
    renew(tiny_);
    for (auto& column : onDemand_)
        if (column.valueOr(row, 0) != 0) column[row] = 0;
}

double CellTable::number(Row row, CellId cell) const {
    const Store store = stores_[cell];
    if (store.onDemand) return onDemand_[store.slot].valueOr(row, 0);
    switch (store.type) {
        case CellType::kSize:
        case CellType::kDate:
            return static_cast<double>(wide_[store.slot][row]);
        case CellType::kCount:
            return static_cast<std::int32_t>(medium_[store.slot][row]);
        case CellType::kPercent:
            return narrow_[store.slot][row] / 100.0;
        case CellType::kFlag:
            return tiny_[store.slot][row];
        case CellType::kReal:
            return std::bit_cast<double>(wide_[store.slot][row]);
        case CellType::kText:
            break;
    }
    return 0;
}

void CellTable::setNumber(Row row, CellId cell, double value) {
    const auto checked = [](double v, double low, double high) {
        if (!(v >= low && v <= high)) raiseOverflow("CellTable");
        return v;
    };
    const Store store = stores_[cell];
    if (store.onDemand) {
        onDemand_[store.slot].ensure(row);
        onDemand_[store.slot][row] = value;
        return;
    }
    switch (store.type) {
        case CellType::kSize:
        case CellType::kDate:
            wide_[store.slot][row] = static_cast<std::int64_t>(checked(value, -0x1p62, 0x1p62));
            break;
        case CellType::kCount:
            medium_[store.slot][row] =
                static_cast<std::uint32_t>(static_cast<std::int32_t>(checked(value, INT32_MIN, INT32_MAX)));
            break;
        case CellType::kPercent:
            narrow_[store.slot][row] =
                static_cast<std::uint16_t>(std::nearbyint(checked(value * 100.0, 0, UINT16_MAX)));
            break;
        case CellType::kFlag:
            tiny_[store.slot][row] = static_cast<std::uint8_t>(checked(value, 0, UINT8_MAX));
            break;
        case CellType::kReal:
            wide_[store.slot][row] = std::bit_cast<std::int64_t>(value);
            break;
        case CellType::kText:
            throw Fault(kFaultTypeMismatch, "CellTable", "Type mismatch");
    }
}

TextRef CellTable::text(Row row, CellId cell) const {
    return isText(cell) ? medium_[stores_[cell].slot][row] : 0;
}

void CellTable::setText(Row row, CellId cell, TextRef text) {
    if (!isText(cell)) throw Fault(kFaultTypeMismatch, "CellTable", "Type mismatch");
    medium_[stores_[cell].slot][row] = text;
}

void CellTable::drop(CellId cell) {
    const Store store = stores_[cell];
    if (store.onDemand) onDemand_[store.slot].clear();
}

void CellTable::clear() {
    const auto empty = [](auto& columns) {
        for (auto& column : columns) column.clear();
    };
    empty(wide_);
    empty(onDemand_);
    empty(medium_);
    empty(narrow_);
    empty(tiny_);
}

}  // namespace hl
