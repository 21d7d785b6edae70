#pragma once
// Every field of one car record, to edit. A field takes only what its byte
// and the game hold; the first one that refuses says why under the fields,
// and OK waits until none does.

#include <QDialog>
#include <array>
#include <map>
#include <vector>

#include "style/carrecord.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ombrevale::workbench {

class CarRecordDialog : public QDialog {
public:
    // Record `index` of all; remapRoom: the remap numbers PALX gives a palette.
    CarRecordDialog(const std::vector<modDeclares::CarRecord>& all, std::size_t index, int remapRoom, QWidget* parent);
    // The record as the fields say; whole only while Problem() is empty.
    const modDeclares::CarRecord& Edited() const { return edited_; }
    QString Problem() const;

    QLineEdit* FieldEdit(cars::Field f) const { return fields_.at(f); }
    QLineEdit* remaps = nullptr;
    QLineEdit* doors = nullptr;
    // Bit b of info_flags, then bits 0 and 1 of info_flags_2.
    std::array<QCheckBox*, 10> flags{};
    QLabel* problem = nullptr;
    QPushButton* ok = nullptr;

private:
    void Check();
    const std::vector<modDeclares::CarRecord>& all_;
    std::size_t index_;
    int remapRoom_;
    modDeclares::CarRecord edited_;
    std::map<cars::Field, QLineEdit*> fields_;
};

}  // namespace ombrevale::workbench
