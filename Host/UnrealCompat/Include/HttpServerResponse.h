#pragma once

#include "Containers/Map.h"
#include "HttpServerConstants.h"
#include "HttpServerHttpVersion.h"
#include "Templates/UniquePtr.h"

struct FHttpServerResponse
{
	HttpVersion::EHttpServerHttpVersion HttpVersion = HttpVersion::EHttpServerHttpVersion::HTTP_VERSION_1_1;
	EHttpServerResponseCodes Code = EHttpServerResponseCodes::Unknown;
	TMap<FString, TArray<FString>> Headers;
	TArray<uint8> Body;

	FHttpServerResponse() = default;
	explicit FHttpServerResponse(TArray<uint8>&& InBody) : Body(MoveTemp(InBody)) {}

	// Text: UTF-8 body, status 200, content type with ";charset=utf-8" appended.
	static TUniquePtr<FHttpServerResponse> Create(const FString& Text, const FString& ContentType);
	// Bytes: body and content type verbatim, status 200.
	static TUniquePtr<FHttpServerResponse> Create(TArray<uint8>&& RawBytes, FString ContentType);
	// 204 No Content with an empty body.
	static TUniquePtr<FHttpServerResponse> Ok();
	static TUniquePtr<FHttpServerResponse> Error(EHttpServerResponseCodes ResponseCode, const FString& ErrorCode = FString(), const FString& ErrorMessage = FString());
};
