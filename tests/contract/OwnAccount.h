#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QString>
#include <QUuid>

/// A login account that no other test has, because the settings of all lie in one folder. Takes its own away again,
/// after what is pending has been written.
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
