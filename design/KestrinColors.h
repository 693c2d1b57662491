#pragma once

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

    /// The name is historical: in light appearance it is the navy of the primary action.
    QColor deepGreen() const { return adaptive({0.004, 0.102, 0.286}, {0.82, 0.88, 0.98}); }
    QColor freshGreen() const { return adaptive({0.082, 0.54, 0.345}, {0.5, 0.82, 0.62}); }
    QColor warmIvory() const { return adaptive({0.957, 0.965, 0.98}, {0.045, 0.06, 0.09}); }
    QColor softIvory() const { return adaptive({0.99, 0.994, 1.0}, {0.07, 0.09, 0.13}); }
    QColor textPrimary() const { return adaptive({0.055, 0.063, 0.086}, {0.925, 0.94, 0.97}); }
    QColor textSecondary() const { return adaptive({0.43, 0.455, 0.5}, {0.68, 0.71, 0.76}); }
    QColor textMuted() const { return adaptive({0.61, 0.635, 0.685}, {0.56, 0.595, 0.65}); }
    QColor border() const { return adaptive({0.875, 0.89, 0.925}, {0.17, 0.2, 0.26}); }
    QColor divider() const { return adaptive({0.9, 0.91, 0.935}, {0.165, 0.19, 0.245}); }
    QColor surface() const { return adaptive({1.0, 1.0, 1.0}, {0.07, 0.09, 0.13}); }
    QColor surfaceMuted() const { return adaptive({0.945, 0.955, 0.975}, {0.095, 0.12, 0.17}); }
    QColor primaryAction() const { return adaptive({0.004, 0.102, 0.286}, {0.59, 0.71, 1.0}); }
    QColor primaryActionText() const { return adaptive({1.0, 1.0, 1.0}, {0.04, 0.09, 0.06}); }
    QColor protected_() const { return adaptive({0.12, 0.62, 0.35}, {0.55, 0.82, 0.64}); }
    QColor attention() const { return adaptive({0.788, 0.522, 0.141}, {0.96, 0.71, 0.32}); }
    QColor attentionSoft() const { return adaptive({0.973, 0.922, 0.847}, {0.26, 0.18, 0.09}); }
    QColor offGray() const { return adaptive({0.463, 0.49, 0.471}, {0.62, 0.66, 0.63}); }
    QColor offGraySoft() const { return adaptive({0.925, 0.93, 0.94}, {0.15, 0.17, 0.21}); }
    QColor risk() const { return adaptive({0.851, 0.29, 0.29}, {1.0, 0.45, 0.37}); }
    QColor riskSoft() const { return adaptive({0.992, 0.925, 0.925}, {0.28, 0.11, 0.11}); }
    QColor link() const { return adaptive({0.082, 0.356, 0.82}, {0.48, 0.72, 1.0}); }
    QColor linkSoft() const { return adaptive({0.915, 0.94, 0.995}, {0.08, 0.145, 0.275}); }
    QColor softGreen() const { return adaptive({0.895, 0.96, 0.92}, {0.075, 0.18, 0.12}); }

    /// The foreground of each tone.
    QList<QColor> toneColors() const;
    /// The tint behind content of each tone.
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
