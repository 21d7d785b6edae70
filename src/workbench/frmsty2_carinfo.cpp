// The "Other Info" page: the ten numbers of a car's record.
#include <QTreeWidget>

#include "style/moddeclares.h"
#include "workbench/frmsty2.h"

void frmSTY2::ShowCarInfo(std::int16_t r) {
    lstInfo->clear();
    if (r < 0 || static_cast<std::size_t>(r) >= modDeclares::STYCarInfo.size()) return;
    const auto& car = modDeclares::STYCarInfo[static_cast<std::size_t>(r)];
    const std::pair<const char*, std::uint8_t> rows[10] = {
        {"Model No.", car.model},
        {"Width", car.width},
        {"Height", car.height},
        {"Passengers", car.passengers},
        {"Wreck No.", car.wreck},
        {"Rating", car.rating},
        {"Front Wheel Offset", car.frontWheelOffset},
        {"Rear Wheel Offset", car.rearWheelOffset},
        {"Front Window Offset", car.frontWindowOffset},
        {"Rear Window Offset", car.rearWindowOffset},
    };
    for (const auto& [name, value] : rows)
        new QTreeWidgetItem(lstInfo, {QString::fromLatin1(name), QString::number(static_cast<unsigned>(value))});
}
