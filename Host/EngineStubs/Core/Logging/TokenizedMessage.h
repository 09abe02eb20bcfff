#pragma once

#include "CoreMinimal.h"
#include "Templates/SharedPointer.h"

namespace EMessageSeverity
{
	enum Type : int
	{
		CriticalError = 0,
		Error = 1,
		PerformanceWarning = 2,
		Warning = 3,
		Info = 4,
	};
}

class FTokenizedMessage
{
public:
	static TSharedRef<FTokenizedMessage> Create(EMessageSeverity::Type InSeverity, const FText& InMessageText = FText());
	FText ToText() const;
	EMessageSeverity::Type GetSeverity() const;
	void SetSeverity(const EMessageSeverity::Type InSeverity);
	static FText GetSeverityText(EMessageSeverity::Type InSeverity);
};
