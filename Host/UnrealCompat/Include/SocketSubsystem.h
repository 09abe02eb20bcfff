// The socket subsystem of the host: loopback-capable POSIX sockets, registered under the name
// of the Win64 editor's platform subsystem so the portable code asks for it as it would there.
#pragma once

#include "IPAddress.h"
#include "Sockets.h"
#include "SocketTypes.h"

#define PLATFORM_SOCKETSUBSYSTEM FName(TEXT("WINDOWS"))

class ISocketSubsystem
{
public:
	virtual ~ISocketSubsystem() = default;
	static ISocketSubsystem* Get(const FName& SubsystemName = NAME_None);

	virtual FSocket* CreateSocket(const FName& SocketType, const FString& SocketDescription, const FName& ProtocolName) = 0;
	FSocket* CreateSocket(const FName& SocketType, const FString& SocketDescription, bool bForceUDP = false)
	{
		(void)bForceUDP;
		return CreateSocket(SocketType, SocketDescription, FName());
	}
	virtual void DestroySocket(FSocket* Socket) = 0;
	virtual TSharedRef<FInternetAddr> CreateInternetAddr() = 0;
};
