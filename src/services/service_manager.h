// Any program as a Windows service, by means of two programs of the system's resource kits that
// must lie in the system folder: instsrv.exe makes and removes services, srvany.exe is the service,
// and starts the program that its registry key names.
#pragma once

#include "automation/text.h"

namespace qv::services {

// True = failure, told by the error state. A service of that name is removed first.
Boolean ServiceInstall(const Text& Name, const Text& AppFile, const Text& AppParms);
// True = failure, told by the error state. What instsrv.exe thinks of the name does not count.
Boolean ServiceUninstall(const Text& Name);
// False = the service is run by srvany.exe of the system folder. True with the error state as it
// was = another program runs it; else failure, told by the error state.
Boolean ServiceVerify(const Text& Name);

}  // namespace qv::services
