#include "scan/file_columns.h"

namespace hl {

std::string fileId(std::uint64_t inode) {
    const auto low = static_cast<std::int32_t>(inode & 0xFFFFFFFF);
    const auto high = static_cast<std::int32_t>(inode >> 32);
    return std::to_string(low) + "-" + std::to_string(high);
}

void fillRow(const ListTable& table, Grid& list, Row row, const FoundFile& file) {
    for (const ListColumn& column : table.columns)
        if (column.fill != nullptr) column.fill({list, row, column.cell}, file);
}

}  // namespace hl
