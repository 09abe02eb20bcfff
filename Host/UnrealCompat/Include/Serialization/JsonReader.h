#pragma once

#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"

template <class CharType = TCHAR>
class TJsonReader
{
public:
	explicit TJsonReader(FString InText) : Text(MoveTemp(InText)) {}
	const FString& GetErrorMessage() const { return ErrorMessage; }
	const FString& GetSourceText() const { return Text; }
	void SetErrorMessage(const FString& Message) { ErrorMessage = Message; }

private:
	FString Text;
	FString ErrorMessage;
};

template <class CharType = TCHAR>
class TJsonReaderFactory
{
public:
	static TSharedRef<TJsonReader<TCHAR>> Create(const FString& JsonString) { return MakeShared<TJsonReader<TCHAR>>(JsonString); }
	static TSharedRef<TJsonReader<TCHAR>> CreateFromView(FStringView JsonString) { return MakeShared<TJsonReader<TCHAR>>(FString(JsonString)); }
};
