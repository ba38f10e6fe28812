// Light or dark, as the person prefers.
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace juntora::screen {

/// Follows the desktop's preference (the settings portal's org.freedesktop.appearance) where the
/// toolkit's own colours do not, now and whenever it changes: dark ones take the place of light
/// ones. Never waits: until the desktop has answered, or where there is none, the toolkit's colours
/// stay. For the toolkit's thread, one in a process, for as long as the application lives.
class Colours : public QObject {
    Q_OBJECT

public:
    Colours();

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ask();
    void follow(const QVariant& scheme);
};

}  // namespace juntora::screen
