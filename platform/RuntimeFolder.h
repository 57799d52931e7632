// SPDX-License-Identifier: MIT
//
// Folders for sockets and locks that only one user can write to, and that go with the system. Any thread.
#pragma once

#include "platform/FileDescriptor.h"

#include <QString>

#include <sys/types.h>

// The program's own folder among those that go with the user's session: in /run for root, else in the user's
// runtime folder. Without such a folder it is one in /tmp, which somebody else can have made before. It need
// not exist.
QString programsRuntimeFolder(uid_t user);

// Makes the folder with these permissions if it is missing, and opens it. Returns one that is not open when
// it cannot be made, is no folder, or can be written to by others than the user of this process.
FileDescriptor openOwnFolder(const QString &path, mode_t permissions);

// Names a runtime folder of root's in the environment where none is named: pkexec keeps none, and Qt would
// make one in the temporary folder and leave it there. Nothing for other users. Call it before the interface
// is made.
void provideRuntimeFolder();
