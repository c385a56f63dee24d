#pragma once

#include <QIcon>

// The padlock shown in the address bar: closed for a verified connection.
namespace LockIcon {
QIcon make(bool secure);
}
