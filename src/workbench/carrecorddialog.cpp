#include "workbench/carrecorddialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "workbench/spritename.h"

namespace ombrevale::workbench {
namespace {

using cars::Field;

// The bits of info_flags, then of info_flags_2, as the format names them.
constexpr std::array<const char*, 10> kFlagNames = {
    "ped_jump: too high for a ped to jump",
    "emerg_lights: emergency lights (police car)",
    "roof_lights: roof lights, on with the headlights",
    "cab: can pull an artic trailer",
    "trailer: can be an artic trailer",
    "forhire_lights: for-hire lights (taxi)",
    "roof_decal: roof decal (TV van)",
    "rear_emerg_lights: rear emergency lights",
    "collide_over: drives over other cars",
    "popup: popup headlights",
};
constexpr int kFlags2Boxes = 3;  // bits 0 and 1 of info_flags_2

QString Tip(Field f) {
    switch (f) {
        case Field::Wreck:
            return QStringLiteral("The wreck picture: 0 to 8, or 99 for a car that cannot be wrecked");
        case Field::Rating:
            return QStringLiteral(
                "How often the car is made: 1-3 bad, 11-13 average, 21-23 good (once to three "
                "times), 99 not recycled");
        case Field::FrontWheel:
        case Field::RearWheel:
        case Field::FrontWindow:
        case Field::RearWindow:
            return QStringLiteral("Signed pixels from the car's centre towards its own end");
        case Field::Width:
        case Field::Height:
            return QStringLiteral("Pixels, 0 to 128");
        default:
            return {};
    }
}

}  // namespace

CarRecordDialog::CarRecordDialog(const std::vector<modDeclares::CarRecord>& all, std::size_t index, int remapRoom,
                                 QWidget* parent)
    : QDialog(parent), all_(all), index_(index), remapRoom_(remapRoom), edited_(all.at(index)) {
    setWindowTitle(QStringLiteral("Car record of %1").arg(CarName(all, index)));
    auto* form = new QFormLayout;
    for (const auto& spec : cars::Fields()) {
        if (spec.field == Field::Flags || spec.field == Field::Flags2) continue;
        auto* edit = new QLineEdit(QString::number(cars::Get(edited_, spec.field)));
        edit->setToolTip(Tip(spec.field));
        fields_[spec.field] = edit;
        form->addRow(QString::fromLatin1(spec.label.data(), static_cast<qsizetype>(spec.label.size())), edit);
    }
    remaps = new QLineEdit(QString::fromStdString(cars::RemapsText(edited_)));
    remaps->setToolTip(QStringLiteral("Remap numbers, commas or blanks between them; PALX gives %1 a palette")
                           .arg(remapRoom > 0 ? QStringLiteral("0..%1").arg(remapRoom - 1) : QStringLiteral("none")));
    form->addRow(QStringLiteral("Remaps"), remaps);
    doors = new QLineEdit(QString::fromStdString(cars::DoorsText(edited_)));
    doors->setToolTip(
        QStringLiteral("x:y for each door, signed pixels from the car's centre, x right and y down; "
                       "x beyond 64 either way: peds walk straight in"));
    form->addRow(QStringLiteral("Doors"), doors);

    auto* flagBox = new QGroupBox(QStringLiteral("Flags"));
    auto* grid = new QGridLayout(flagBox);
    for (std::size_t b = 0; b < flags.size(); ++b) {
        flags[b] = new QCheckBox(QString::fromLatin1(kFlagNames[b]));
        const bool second = b >= 8;
        flags[b]->setChecked(((second ? edited_.infoFlags2 : edited_.infoFlags) >> (b % 8)) & 1);
        grid->addWidget(flags[b], static_cast<int>(b % 5), static_cast<int>(b / 5));
    }
    // info_flags_2 has no name for its other bits: they stay a number.
    fields_[Field::Flags2] = new QLineEdit(QString::number(edited_.infoFlags2 & ~kFlags2Boxes));
    fields_[Field::Flags2]->setToolTip(QStringLiteral("Bits 2 to 7 of info_flags_2, which the format leaves unnamed"));
    form->addRow(QStringLiteral("Flags 2, other bits"), fields_[Field::Flags2]);

    problem = new QLabel;
    problem->setWordWrap(true);
    problem->setStyleSheet(QStringLiteral("color: #b00000"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    ok = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(flagBox);
    layout->addWidget(problem);
    layout->addWidget(buttons);
    for (auto& [field, edit] : fields_) connect(edit, &QLineEdit::textChanged, this, [this] { Check(); });
    for (QLineEdit* edit : {remaps, doors}) connect(edit, &QLineEdit::textChanged, this, [this] { Check(); });
    for (QCheckBox* box : flags) connect(box, &QCheckBox::toggled, this, [this] { Check(); });
    Check();
}

QString CarRecordDialog::Problem() const { return problem->text(); }

void CarRecordDialog::Check() {
    modDeclares::CarRecord r = all_.at(index_);
    std::string why;
    QLineEdit* refusing = nullptr;
    const auto refuse = [&](QLineEdit* where, std::string text) {
        if (!refusing) {
            refusing = where;
            why = std::move(text);
        }
    };
    for (const auto& [field, edit] : fields_) {
        const auto v = cars::ParseValue(cars::SpecOf(field), edit->text().trimmed().toStdString());
        if (const auto* text = std::get_if<std::string>(&v))
            refuse(edit, *text);
        else
            cars::Set(r, field, std::get<int>(v));
    }
    if (!refusing && (r.infoFlags2 & kFlags2Boxes) != 0)
        refuse(fields_[Field::Flags2], "bits 0 and 1 of Flags 2 are the collide_over and popup boxes");
    r.infoFlags = 0;
    for (std::size_t b = 0; b < flags.size(); ++b)
        if (flags[b]->isChecked()) (b < 8 ? r.infoFlags : r.infoFlags2) |= static_cast<std::uint8_t>(1u << (b % 8));

    const auto m = cars::ParseRemaps(remaps->text().toStdString(), remapRoom_);
    if (const auto* text = std::get_if<std::string>(&m))
        refuse(remaps, *text);
    else
        r.remaps = std::get<std::vector<std::uint8_t>>(m);
    const auto d = cars::ParseDoors(doors->text().toStdString());
    if (const auto* text = std::get_if<std::string>(&d))
        refuse(doors, *text);
    else
        r.doors = std::get<std::vector<std::uint16_t>>(d);
    r.numRemaps = static_cast<std::uint8_t>(r.remaps.size());
    r.numDoors = static_cast<std::uint8_t>(r.doors.size());
    // What no single field can tell: a model another record has.
    if (!refusing)
        if (auto text = cars::RecordRefusal(r, index_, all_, remapRoom_)) refuse(fields_[Field::Model], *text);

    for (auto& [field, edit] : fields_) edit->setStyleSheet({});
    for (QLineEdit* edit : {remaps, doors}) edit->setStyleSheet({});
    if (refusing) refusing->setStyleSheet(QStringLiteral("background: #ffd8d8"));
    problem->setText(QString::fromStdString(why));
    ok->setEnabled(!refusing);
    edited_ = std::move(r);
}

}  // namespace ombrevale::workbench
