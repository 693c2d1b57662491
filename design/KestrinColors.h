#pragma once

#include "design/KestrinTone.h"

#include <QtQml/qqmlregistration.h>

#include <QColor>
#include <QList>
#include <QObject>

class QJSEngine;
class QQmlEngine;

namespace kestrin::design {

class KestrinAppearance;

/// The palette: every colour that Kestrin draws with, as the appearance of the moment has it. Opaque sRGB. A
/// change of the appearance is told once, for all of them. Main thread.
class KestrinColors : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor deepGreen READ deepGreen NOTIFY changed)
    Q_PROPERTY(QColor freshGreen READ freshGreen NOTIFY changed)
    Q_PROPERTY(QColor warmIvory READ warmIvory NOTIFY changed)
    Q_PROPERTY(QColor softIvory READ softIvory NOTIFY changed)
    Q_PROPERTY(QColor textPrimary READ textPrimary NOTIFY changed)
    Q_PROPERTY(QColor textSecondary READ textSecondary NOTIFY changed)
    Q_PROPERTY(QColor textMuted READ textMuted NOTIFY changed)
    Q_PROPERTY(QColor border READ border NOTIFY changed)
    Q_PROPERTY(QColor divider READ divider NOTIFY changed)
    Q_PROPERTY(QColor surface READ surface NOTIFY changed)
    Q_PROPERTY(QColor surfaceMuted READ surfaceMuted NOTIFY changed)
    Q_PROPERTY(QColor primaryAction READ primaryAction NOTIFY changed)
    Q_PROPERTY(QColor primaryActionText READ primaryActionText NOTIFY changed)
    Q_PROPERTY(QColor protected READ protected_ NOTIFY changed)
    Q_PROPERTY(QColor attention READ attention NOTIFY changed)
    Q_PROPERTY(QColor attentionSoft READ attentionSoft NOTIFY changed)
    Q_PROPERTY(QColor offGray READ offGray NOTIFY changed)
    Q_PROPERTY(QColor offGraySoft READ offGraySoft NOTIFY changed)
    Q_PROPERTY(QColor risk READ risk NOTIFY changed)
    Q_PROPERTY(QColor riskSoft READ riskSoft NOTIFY changed)
    Q_PROPERTY(QColor link READ link NOTIFY changed)
    Q_PROPERTY(QColor linkSoft READ linkSoft NOTIFY changed)
    Q_PROPERTY(QColor softGreen READ softGreen NOTIFY changed)
    /// For KestrinTones, in the order of the tones.
    Q_PROPERTY(QList<QColor> toneColors READ toneColors NOTIFY changed)
    Q_PROPERTY(QList<QColor> toneSoftBackgrounds READ toneSoftBackgrounds NOTIFY changed)

  public:
    static KestrinColors &shared();
    static KestrinColors *create(QQmlEngine *engine, QJSEngine *scriptEngine);

    /// The appearance outlives the colours.
    explicit KestrinColors(const KestrinAppearance &appearance, QObject *parent = nullptr);

    QColor deepGreen() const;
    QColor freshGreen() const;
    QColor warmIvory() const;
    QColor softIvory() const;
    QColor textPrimary() const;
    QColor textSecondary() const;
    QColor textMuted() const;
    QColor border() const;
    QColor divider() const;
    QColor surface() const;
    QColor surfaceMuted() const;
    QColor primaryAction() const;
    QColor primaryActionText() const;
    QColor protected_() const;
    QColor attention() const;
    QColor attentionSoft() const;
    QColor offGray() const;
    QColor offGraySoft() const;
    QColor risk() const;
    QColor riskSoft() const;
    QColor link() const;
    QColor linkSoft() const;
    QColor softGreen() const;

    /// The foreground of a tone.
    QColor color(KestrinTone tone) const;
    /// The tint behind content of a tone.
    QColor softBackground(KestrinTone tone) const;
    QList<QColor> toneColors() const;
    QList<QColor> toneSoftBackgrounds() const;

  Q_SIGNALS:
    void changed();

  private:
    struct KestrinRGB {
        double red;
        double green;
        double blue;
    };
    QColor adaptive(const KestrinRGB &light, const KestrinRGB &dark) const;

    const KestrinAppearance &m_appearance;
};

} // namespace kestrin::design
