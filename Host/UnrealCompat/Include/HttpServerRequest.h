#pragma once

#include "Containers/Map.h"
#include "HttpPath.h"
#include "HttpServerHttpVersion.h"
#include "Templates/SharedPointer.h"

class FInternetAddr;

enum class EHttpServerRequestVerbs : uint16
{
	VERB_NONE = 0,
	VERB_GET = 1 << 0,
	VERB_POST = 1 << 1,
	VERB_PUT = 1 << 2,
	VERB_PATCH = 1 << 3,
	VERB_DELETE = 1 << 4,
	VERB_OPTIONS = 1 << 5,
	VERB_HEAD = 1 << 6,
	VERB_TRACE = 1 << 7,
	VERB_CONNECT = 1 << 8,
};
ENUM_CLASS_FLAGS(EHttpServerRequestVerbs)

struct FHttpServerRequest
{
	TSharedPtr<FInternetAddr> PeerAddress;
	FHttpPath RelativePath;
	EHttpServerRequestVerbs Verb = EHttpServerRequestVerbs::VERB_NONE;
	HttpVersion::EHttpServerHttpVersion HttpVersion = HttpVersion::EHttpServerHttpVersion::HTTP_VERSION_UNKNOWN;
	TMap<FString, TArray<FString>> Headers;
	TMap<FString, FString> QueryParams;
	TMap<FString, FString> PathParams;
	TArray<uint8> Body;
};
