#pragma once

#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"

class FInternetAddr
{
public:
	virtual ~FInternetAddr() = default;
	virtual void SetIp(uint32 InAddr) = 0;
	virtual void SetIp(const TCHAR* InAddr, bool& bIsValid) = 0;
	virtual void GetIp(uint32& OutAddr) const = 0;
	virtual void SetPort(int32 InPort) = 0;
	virtual int32 GetPort() const = 0;
	virtual void SetAnyAddress() = 0;
	virtual void SetLoopbackAddress() = 0;
	virtual FString ToString(bool bAppendPort) const = 0;
	virtual bool IsValid() const = 0;
	virtual TSharedRef<FInternetAddr> Clone() const = 0;
};
