#pragma once

#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"
#include "Policies/PrettyJsonPrintPolicy.h"

// The writer gathers the text and hands it to its target string in Close(), as the engine's
// string-target writer does.
template <class CharType = TCHAR, class PrintPolicy = TPrettyJsonPrintPolicy<CharType>>
class TJsonWriter
{
public:
	explicit TJsonWriter(FString* InTarget, int32 InInitialIndent) : Target(InTarget), InitialIndent(InInitialIndent) {}
	bool Close()
	{
		if (Target)
		{
			*Target = Buffer;
		}
		return true;
	}
	FString& GetBuffer() { return Buffer; }
	int32 GetInitialIndent() const { return InitialIndent; }
	static constexpr bool IsPretty() { return PrintPolicy::bPretty; }

private:
	FString* Target;
	int32 InitialIndent;
	FString Buffer;
};

template <class CharType = TCHAR, class PrintPolicy = TPrettyJsonPrintPolicy<CharType>>
class TJsonWriterFactory
{
public:
	static TSharedRef<TJsonWriter<CharType, PrintPolicy>> Create(FString* const Stream, int32 InitialIndent = 0)
	{
		return MakeShared<TJsonWriter<CharType, PrintPolicy>>(Stream, InitialIndent);
	}
};

FString EscapeJsonString(const FString& StringVal);
