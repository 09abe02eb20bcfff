#pragma once

#include "CoreMinimal.h"

DECLARE_DELEGATE(FExecuteAction);
DECLARE_DELEGATE_RetVal(bool, FCanExecuteAction);
DECLARE_DELEGATE_RetVal(bool, FIsActionButtonVisible);

struct FUIAction
{
	FUIAction();
	FUIAction(FExecuteAction ExecuteAction);
	FUIAction(FExecuteAction ExecuteAction, FCanExecuteAction CanExecuteAction);
	FExecuteAction ExecuteAction;
	FCanExecuteAction CanExecuteAction;
};
