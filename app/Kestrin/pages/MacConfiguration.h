#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QUrl>

namespace kestrin::app {

/// The web pages that the window links to. The site is chosen when Kestrin is built (KESTRIN_SITE_URL).
class MacConfiguration : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QUrl privacyURL READ privacyURL CONSTANT)
    Q_PROPERTY(QUrl supportURL READ supportURL CONSTANT)

  public:
    using QObject::QObject;

    /// The product's privacy policy.
    static const QUrl &privacyURL();
    /// Where the product's users get help.
    static const QUrl &supportURL();
};

} // namespace kestrin::app
