#pragma once

#include "IPAddress.h"

class FSocket
{
public:
	explicit FSocket(const FString& InDescription) : Description(InDescription) {}
	virtual ~FSocket() = default;
	virtual bool Close() = 0;
	virtual bool Bind(const FInternetAddr& Addr) = 0;
	virtual bool Connect(const FInternetAddr& Addr) = 0;
	virtual bool Listen(int32 MaxBacklog) = 0;
	virtual bool SetReuseAddr(bool bAllowReuse = true) = 0;
	virtual int32 GetPortNo() = 0;
	const FString& GetDescription() const { return Description; }

private:
	FString Description;
};
