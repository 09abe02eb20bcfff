#pragma once

#include "UObject/NameTypes.h"

struct FNetworkProtocolTypes
{
	static const FName IPv4;
	static const FName IPv6;
};

enum class ESocketType
{
	SOCKTYPE_Unknown,
	SOCKTYPE_Datagram,
	SOCKTYPE_Streaming
};
