#ifndef ORVACAT_QTLOCALPEER_H
#define ORVACAT_QTLOCALPEER_H

/**
 * @file
 * QtLocalPeer, one instance's end of the single-instance channel.
 */

#include <orvacat/orvacat_export.h>
#include <orvacat/qtlockedfile.h>

#include <QObject>
#include <QString>

class QLocalServer;

/**
 * One instance's end of the single-instance channel for an application id:
 * a lock file in the temporary folder decides which process is the primary,
 * and the primary listens on a local socket for the others' messages.
 *
 * The id defaults to the executable's path; processes of one user with the
 * same id meet, whatever library they were built with, as long as they speak
 * the same framing (a big-endian 32-bit byte count, the UTF-8 text, answered
 * by "ack"). The primary takes at most 32 connections at once and messages
 * of up to 16 MiB, each complete within 5 seconds of connecting; anything
 * else is dropped with a warning.
 */
class ORVACAT_EXPORT QtLocalPeer : public QObject
{
    Q_OBJECT

public:
    /**
     * Names the lock file and the socket after @p appId (the executable's
     * path when empty) and the user, and opens the lock file; which role this
     * process takes is decided by the first isClient().
     */
    explicit QtLocalPeer(QObject* parent = nullptr, const QString& appId = QString());
    ~QtLocalPeer() override;

    /**
     * False when this process is (or, by this call, becomes) the primary
     * instance and listens for messages; true when another process of this
     * user holds the lock. Also false, with a warning, when the lock file or
     * the socket belongs to another user or another user holds the lock: the
     * process then runs alone, without listening.
     */
    bool isClient();
    /**
     * Sends @p message to the primary instance and waits up to @p timeout ms
     * for it to be acknowledged. False in the primary itself, when no
     * primary answered, or when the process listening on the socket is
     * another user's (nothing is sent to it).
     */
    bool sendMessage(const QString& message, int timeout);
    /** The application id: the one given, or the executable's path. */
    QString applicationId() const { return id; }

    /**
     * Gives up the primary role: releases the lock so that a process started
     * later becomes the primary and takes the socket name over. This process
     * keeps listening for connections already addressed to it. Returns the
     * lock file's result.
     */
    bool unlock();

Q_SIGNALS:
    /** Emitted once per message, after it was acknowledged and the sender has gone. */
    void messageReceived(const QString& message);

protected Q_SLOTS:
    /**
     * Starts reading the message of every waiting connection; the server
     * calls it. Connections beyond a limit of open ones are dropped with a
     * warning.
     */
    void receiveConnection();

protected:
    /** The application id. */
    QString id;
    /** The local socket's name: "qtsingleapp-", part of the id, its checksum and the user id. */
    QString socketName;
    /** Listens on socketName while this process is the primary. */
    QLocalServer* server;
    /** The lock that makes its holder the primary: socketName + "-lockfile" in the temporary folder. */
    QtLP_Private::QtLockedFile lockFile;

private:
    // Identity of the socket file this peer created, to tell it from a successor's.
    quint64 m_socketDevice = 0;
    quint64 m_socketInode = 0;
};

#endif // ORVACAT_QTLOCALPEER_H
