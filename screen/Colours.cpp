#include "screen/Colours.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPalette>

namespace juntora::screen {
namespace {

// The settings portal and its numbers.
const QString SERVICE = QStringLiteral("org.freedesktop.portal.Desktop");
const QString PATH = QStringLiteral("/org/freedesktop/portal/desktop");
const QString INTERFACE = QStringLiteral("org.freedesktop.portal.Settings");
const QString GROUP = QStringLiteral("org.freedesktop.appearance");
const QString KEY = QStringLiteral("color-scheme");
constexpr uint PREFERS_DARK = 1;

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

QPalette darkColours() {
    QPalette colours{QColor(0x35, 0x35, 0x35)};
    colours.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
    colours.setColor(QPalette::AlternateBase, QColor(0x2b, 0x2b, 0x2b));
    colours.setColor(QPalette::ToolTipBase, QColor(0x23, 0x23, 0x23));
    colours.setColor(QPalette::ToolTipText, Qt::white);
    colours.setColor(QPalette::Highlight, QColor(0x2a, 0x6f, 0xb0));
    colours.setColor(QPalette::HighlightedText, Qt::white);
    const QColor faint(0x80, 0x80, 0x80);
    colours.setColor(QPalette::Disabled, QPalette::WindowText, faint);
    colours.setColor(QPalette::Disabled, QPalette::ButtonText, faint);
    colours.setColor(QPalette::Disabled, QPalette::Text, faint);
    return colours;
}

}  // namespace

Colours::Colours() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        // The bus finds the slot by its text without blanks, and its parameters by their names.
        qRegisterMetaType<QDBusVariant>();
        const QByteArray slot =
            QMetaObject::normalizedSignature(SLOT(settingChanged(QString, QString, QDBusVariant)));
        bus.connect(SERVICE, PATH, INTERFACE, QStringLiteral("SettingChanged"), this,
                    slot.constData());
        ask();
    }
}

void Colours::ask() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(SERVICE, PATH, INTERFACE, QStringLiteral("Read"));
    question << GROUP << KEY;
    auto* answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* watcher) {
                const QDBusPendingReply<QDBusVariant> reply = *watcher;
                if (reply.isValid()) {
                    follow(reply.value().variant());
                }
                watcher->deleteLater();
            });
}

void Colours::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == GROUP && key == KEY) {
        follow(value.variant());
    }
}

/// The answer to a question has one wrapping more than word of a change.
void Colours::follow(const QVariant& scheme) {
    const QVariant value =
        scheme.canConvert<QDBusVariant>() ? scheme.value<QDBusVariant>().variant() : scheme;
    QApplication::setPalette(QPalette());
    if (value.toUInt() == PREFERS_DARK && !isDark(QApplication::palette())) {
        QApplication::setPalette(darkColours());
    }
}

}  // namespace juntora::screen

#include <moc_Colours.cpp>  // NOLINT(bugprone-suspicious-include): made by the toolkit
