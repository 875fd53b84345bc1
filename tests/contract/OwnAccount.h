#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QString>
#include <QUuid>

/// A login account that no other test uses: the settings of all tests lie in one folder. At the end its settings are
/// written and removed.
class OwnAccount {
public:
    OwnAccount() = default;
    ~OwnAccount()
    {
        QCoreApplication::processEvents();
        QDir(folderOf(name)).removeRecursively();
    }

    static QString folderOf(const QString &account)
    {
        return QCoreApplication::applicationDirPath() + QStringLiteral("/work/") + account;
    }

    const QString name = QStringLiteral("账户-") + QUuid::createUuid().toString(QUuid::WithoutBraces);

private:
    Q_DISABLE_COPY(OwnAccount)
};
