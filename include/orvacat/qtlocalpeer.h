#ifndef ORVACAT_QTLOCALPEER_H
#define ORVACAT_QTLOCALPEER_H

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
    explicit QtLocalPeer(QObject* parent = nullptr, const QString& appId = QString());
    ~QtLocalPeer() override;

    /**
     * False when this process is (or, by this call, becomes) the primary
     * instance and listens for messages; true when another process holds the
     * lock.
     */
    bool isClient();
    /**
     * Sends @p message to the primary instance and waits up to @p timeout ms
     * for it to be acknowledged. False in the primary itself, or when no
     * primary answered.
     */
    bool sendMessage(const QString& message, int timeout);
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
    void receiveConnection();

protected:
    QString id;
    QString socketName;
    QLocalServer* server;
    QtLP_Private::QtLockedFile lockFile;

private:
    // Identity of the socket file this peer created, to tell it from a successor's.
    quint64 m_socketDevice = 0;
    quint64 m_socketInode = 0;
};

#endif // ORVACAT_QTLOCALPEER_H
