#include "app/Kestrin/pages/MacConfiguration.h"

using namespace Qt::StringLiterals;

namespace kestrin::app {

namespace {

QUrl page(const QString &path) {
    const QUrl url(QStringLiteral(KESTRIN_SITE_URL) + path, QUrl::StrictMode);
    // Whoever built it has to know, not the user who clicks.
    if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty())
        qFatal("KESTRIN_SITE_URL is no web address: %s", KESTRIN_SITE_URL);
    return url;
}

} // namespace

const QUrl &MacConfiguration::privacyURL() {
    static const QUrl url = page(u"/privacy"_s);
    return url;
}

const QUrl &MacConfiguration::supportURL() {
    static const QUrl url = page(u"/support"_s);
    return url;
}

} // namespace kestrin::app
