#include "ui/browser/refreshdialog.h"

#include "core/base/uitexts.h"
#include "core/browsing/refreshinterval.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

RefreshDialog::RefreshDialog(QWidget *parent)
    : QDialog(parent)
    , m_on(new QCheckBox(uiText(901), this))
    , m_seconds(new QSpinBox(this))
    , m_reading(new QLabel(this))
    , m_mark(new QCheckBox(uiText(2509), this))
{
    setWindowTitle(uiText(900));
    m_seconds->setRange(RefreshInterval::MinimumSeconds, RefreshInterval::MaximumSeconds);
    m_seconds->setValue(RefreshInterval::presets().at(2));

    auto *intervalRow = new QHBoxLayout;
    intervalRow->addWidget(new QLabel(uiText(902), this));
    intervalRow->addWidget(m_seconds);
    intervalRow->addWidget(m_reading, 1);

    // One button per usual choice; "Off" switches the refresh off.
    auto *presetRow = new QHBoxLayout;
    auto *off = new QPushButton(uiText(903), this);
    off->setObjectName(QStringLiteral("preset0"));
    connect(off, &QPushButton::clicked, this, [this] { m_on->setChecked(false); });
    presetRow->addWidget(off);
    for (int preset : RefreshInterval::presets()) {
        auto *button = new QPushButton(RefreshInterval::label(preset), this);
        button->setObjectName(QStringLiteral("preset%1").arg(preset));
        connect(button, &QPushButton::clicked, this, [this, preset] { setSeconds(preset); });
        presetRow->addWidget(button);
    }

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_on);
    layout->addLayout(intervalRow);
    layout->addLayout(presetRow);
    layout->addWidget(m_mark);
    layout->addWidget(buttons);

    connect(m_on, &QCheckBox::toggled, this, &RefreshDialog::showReading);
    connect(m_seconds, qOverload<int>(&QSpinBox::valueChanged), this, &RefreshDialog::showReading);
    showReading();
}

int RefreshDialog::seconds() const
{
    return m_on->isChecked() ? RefreshInterval::bounded(m_seconds->value()) : 0;
}

void RefreshDialog::setSeconds(int seconds)
{
    const int bounded = RefreshInterval::bounded(seconds);
    m_on->setChecked(bounded > 0);
    if (bounded > 0)
        m_seconds->setValue(bounded);
    showReading();
}

bool RefreshDialog::marksChanges() const
{
    return m_mark->isChecked();
}

void RefreshDialog::setMarksChanges(bool on)
{
    m_mark->setChecked(on);
}

void RefreshDialog::showReading()
{
    m_seconds->setEnabled(m_on->isChecked());
    m_mark->setEnabled(m_on->isChecked());
    m_reading->setText(
        m_on->isChecked() ? u'(' + RefreshInterval::label(m_seconds->value()) + u')' : QString());
}
