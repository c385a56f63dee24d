#pragma once

#include <QByteArray>

// The words the mail check says to a POP3 server, one reply line at a time, without a
// socket. After the greeting it sends USER, PASS, LIST and QUIT; `step` counts the
// replies. A reply is good when it begins with "+OK". A refused greeting, USER or PASS
// ends the dialogue at once without QUIT. A refused LIST says nothing more: the mailbox
// then ends by its time-out. The reply to QUIT (or any fifth reply) ends it.
//
// Two things come before USER when the connection may be upgraded: CAPA, and STLS when
// the server lists it; after the handshake the dialogue goes on with USER. Multi-line
// answers (the CAPA list, the LIST scan lines up to ".") belong to the reply that
// opened them and are not counted as replies of their own.
class Pop3Dialogue final
{
public:
    struct Reaction
    {
        QByteArray send; // what to write to the server now, if anything
        bool startTls = false; // begin the TLS handshake now; discard unread clear text
        bool done = false; // the dialogue has ended
        bool newMail = false; // the LIST reply announced mail
        bool tlsRefused = false; // the server offered STLS and then refused it
    };

    Pop3Dialogue(const QByteArray &user, const QByteArray &password, bool askForStartTls);

    // One reply line, without its CR LF.
    Reaction reply(const QByteArray &line);
    // The handshake that STLS asked for has succeeded.
    Reaction tlsEstablished();

    int step() const { return m_step; }
    bool quitSent() const { return m_quitSent; }
    bool isDone() const { return m_step >= 5; }

    static bool isGood(const QByteArray &reply);
    // Only the fifth character counts: the first digit of the message count after
    // "+OK ". A count from 10 to 19 reads as "1" and announces mail; anything but a
    // digit from 1 to 9 there announces nothing.
    static bool announcesMail(const QByteArray &listReply);

private:
    enum class Phase { Steps, CapaStatus, CapaList, StartTlsReply, AwaitTls, ListLines };

    Reaction countedReply(const QByteArray &line);
    Reaction sendUser();

    QByteArray m_user;
    QByteArray m_password;
    bool m_askForStartTls;
    bool m_startTlsOffered = false;
    bool m_quitSent = false;
    Phase m_phase = Phase::Steps;
    int m_step = 0;
};
