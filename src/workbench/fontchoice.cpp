#include "workbench/fontchoice.h"

#include <QComboBox>
#include <QLabel>

#include "style/fonts.h"
#include "workbench/twips.h"

namespace ombrevale::workbench {

FontChoice::FontChoice(QWidget* page, QObject* parent) : QObject(parent) {
    // Below the text box, left of Create, over none of the page's controls.
    combo_ = new QComboBox(page);
    combo_->setObjectName(QStringLiteral("cmbFont"));
    twips::Place(combo_, 90, 450, 4500, 315);
    note_ = new QLabel(page);
    note_->setObjectName(QStringLiteral("lblFontNote"));
    note_->setWordWrap(true);
    twips::Place(note_, 90, 4620, 8880, 600);
    note_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    note_->hide();
    Refill();
}

void FontChoice::Refill() {
    const int chosen = combo_->currentIndex();
    combo_->clear();
    combo_->addItem(QStringLiteral("Design rule (sprite 1366 for \"!\")"));
    const auto fonts = fonts::StyleFonts();
    for (std::size_t f = 0; f < fonts.size(); ++f) {
        combo_->addItem(QStringLiteral("Font %1").arg(f + 1));
        combo_->setItemData(combo_->count() - 1,
                            QStringLiteral("%1 glyphs from sprite %2").arg(fonts[f].count).arg(fonts[f].first),
                            Qt::ToolTipRole);
    }
    combo_->setCurrentIndex(chosen > 0 && chosen < combo_->count() ? chosen : 0);
}

void FontChoice::Reset() {
    combo_->setCurrentIndex(0);
    Note({});
}

int FontChoice::Chosen() const { return combo_->currentIndex() <= 0 ? fonts::kFixedRule : combo_->currentIndex() - 1; }

void FontChoice::Note(const QString& text) {
    note_->setText(text);
    note_->setVisible(!text.isEmpty());
}

}  // namespace ombrevale::workbench
