#pragma once

#include "CoreMinimal.h"
#include "Internationalization/Text.h"

class UObject;

class FScopedTransaction
{
public:
	FScopedTransaction(const FText& SessionName, const bool bShouldActuallyTransact = true);
	FScopedTransaction(const TCHAR* TransactionContext, const FText& SessionName, UObject* PrimaryObject, const bool bShouldActuallyTransact = true);
	~FScopedTransaction();
	void Cancel();
	bool IsOutstanding() const;
};
