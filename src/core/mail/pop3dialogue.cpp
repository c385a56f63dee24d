#include "core/mail/pop3dialogue.h"

#include <QStringBuilder>

Pop3Dialogue::Pop3Dialogue(const QByteArray &user, const QByteArray &password, bool askForStartTls)
    : m_user(user)
    , m_password(password)
    , m_askForStartTls(askForStartTls)
{ }

bool Pop3Dialogue::isGood(const QByteArray &reply)
{
    return reply.startsWith("+OK");
}

bool Pop3Dialogue::announcesMail(const QByteArray &listReply)
{
    if (listReply.size() < 5)
        return false;
    const char digit = listReply.at(4);
    return digit >= '1' && digit <= '9';
}

Pop3Dialogue::Reaction Pop3Dialogue::sendUser()
{
    m_phase = Phase::Steps;
    Reaction reaction;
    reaction.send = "USER " + m_user + "\r\n";
    return reaction;
}

Pop3Dialogue::Reaction Pop3Dialogue::reply(const QByteArray &line)
{
    if (isDone())
        return {};
    switch (m_phase) {
    case Phase::Steps:
        return countedReply(line);
    case Phase::CapaStatus:
        // A server without CAPA simply has no STLS.
        if (!isGood(line))
            return sendUser();
        m_phase = Phase::CapaList;
        return {};
    case Phase::CapaList:
        if (line == ".") {
            if (!m_startTlsOffered)
                return sendUser();
            m_phase = Phase::StartTlsReply;
            Reaction reaction;
            reaction.send = "STLS\r\n";
            return reaction;
        }
        if (line.trimmed().toUpper() == "STLS")
            m_startTlsOffered = true;
        return {};
    case Phase::StartTlsReply: {
        Reaction reaction;
        if (isGood(line)) {
            m_phase = Phase::AwaitTls;
            reaction.startTls = true;
        } else {
            // Going on in clear after the offer was withdrawn would hand the password
            // to whoever removed it.
            m_step = 5;
            reaction.done = true;
            reaction.tlsRefused = true;
        }
        return reaction;
    }
    case Phase::AwaitTls:
        return {};
    case Phase::ListLines:
        if (line == ".")
            m_phase = Phase::Steps;
        return {};
    }
    return {};
}

Pop3Dialogue::Reaction Pop3Dialogue::tlsEstablished()
{
    if (m_phase != Phase::AwaitTls)
        return {};
    return sendUser();
}

Pop3Dialogue::Reaction Pop3Dialogue::countedReply(const QByteArray &line)
{
    ++m_step;
    const bool good = isGood(line);
    Reaction reaction;
    switch (m_step) {
    case 1:
        if (!good)
            m_step = 5;
        else if (m_askForStartTls) {
            m_phase = Phase::CapaStatus;
            reaction.send = "CAPA\r\n";
        } else
            reaction = sendUser();
        break;
    case 2:
        if (good)
            reaction.send = "PASS " + m_password + "\r\n";
        else
            m_step = 5;
        break;
    case 3:
        if (good)
            reaction.send = "LIST\r\n";
        else
            m_step = 5;
        break;
    case 4:
        if (good) {
            reaction.newMail = announcesMail(line);
            reaction.send = "QUIT\r\n";
            m_quitSent = true;
            m_phase = Phase::ListLines;
        }
        break;
    default:
        break;
    }
    reaction.done = m_step == 5;
    return reaction;
}
