#include "Blueprint/ZorvekMCPBridgeRecipeRunner.h"

#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

const TCHAR* const ZorvekMCPBridgeRecipeRunner::RecipeMutationPolicy = TEXT("sequential_no_rollback");

namespace
{
	// How a string value takes part in substitution.
	enum class ERecipeStringForm : uint8
	{
		Plain,
		WholeValue,
		Template
	};

	struct FRecipeReference
	{
		// The text between "$" (or "${") and the end (or "}"), as written.
		FString Text;
		FString StepId;
		// Empty with bHasPath false for a reference to a step's whole result.
		FString Path;
		bool bHasPath = false;
	};

	// A string split into its literal pieces and references: Literals[i] comes before
	// References[i], and the last literal after the last reference.
	struct FRecipeString
	{
		ERecipeStringForm Form = ERecipeStringForm::Plain;
		TArray<FString> Literals;
		TArray<FRecipeReference> References;
	};

	FRecipeReference MakeRecipeReference(const FString& Text)
	{
		FRecipeReference Reference;
		Reference.Text = Text;
		int32 Dot = INDEX_NONE;
		if (Text.FindChar(TEXT('.'), Dot))
		{
			Reference.StepId = Text.Left(Dot);
			Reference.Path = Text.Mid(Dot + 1);
			Reference.bHasPath = true;
		}
		else
		{
			Reference.StepId = Text;
		}
		return Reference;
	}

	// Splits a string into literals and references. A "${" without its "}" is the only way to
	// write a malformed reference.
	bool ParseRecipeString(const FString& Text, FRecipeString& Out, FString& OutError)
	{
		Out = FRecipeString();
		if (Text.Contains(TEXT("${"), ESearchCase::CaseSensitive))
		{
			Out.Form = ERecipeStringForm::Template;
			int32 Cursor = 0;
			while (true)
			{
				const int32 Open = Text.Find(TEXT("${"), ESearchCase::CaseSensitive, ESearchDir::FromStart, Cursor);
				if (Open == INDEX_NONE)
				{
					Out.Literals.Add(Text.Mid(Cursor));
					return true;
				}
				const int32 Close = Text.Find(TEXT("}"), ESearchCase::CaseSensitive, ESearchDir::FromStart, Open + 2);
				if (Close == INDEX_NONE)
				{
					OutError = FString::Printf(TEXT("Could not resolve recipe reference in '%s': missing closing '}'."), *Text);
					return false;
				}
				Out.Literals.Add(Text.Mid(Cursor, Open - Cursor));
				Out.References.Add(MakeRecipeReference(Text.Mid(Open + 2, Close - Open - 2)));
				Cursor = Close + 1;
			}
		}
		if (Text.StartsWith(TEXT("$"), ESearchCase::CaseSensitive))
		{
			Out.Form = ERecipeStringForm::WholeValue;
			Out.References.Add(MakeRecipeReference(Text.Mid(1)));
			return true;
		}
		Out.Literals.Add(Text);
		return true;
	}

	FString RecipeUnknownStepMessage(const FString& Text, const FRecipeString& Parsed, const FRecipeReference& Reference)
	{
		if (Parsed.Form == ERecipeStringForm::Template)
		{
			return FString::Printf(TEXT("Could not resolve recipe reference '${%s}' in '%s'."), *Reference.Text, *Text);
		}
		return FString::Printf(TEXT("Could not resolve recipe reference '%s': unknown step id '%s'."), *Text, *Reference.StepId);
	}

	FString RecipeMissingPathMessage(const FString& Text, const FRecipeString& Parsed, const FRecipeReference& Reference)
	{
		if (Parsed.Form == ERecipeStringForm::Template)
		{
			return FString::Printf(TEXT("Could not resolve recipe reference '${%s}' in '%s'."), *Reference.Text, *Text);
		}
		return FString::Printf(TEXT("Could not resolve recipe reference '%s': missing path '%s'."), *Text, *Reference.Path);
	}

	bool IsRecipeArrayIndex(const FString& Segment)
	{
		if (Segment.IsEmpty())
		{
			return false;
		}
		for (const TCHAR Character : Segment)
		{
			if (!FChar::IsDigit(Character))
			{
				return false;
			}
		}
		return true;
	}

	// The field of Object whose name is exactly Name. The engine's JSON object looks keys up
	// without regard to case, so the exact match is made here.
	TSharedPtr<FJsonValue> FindRecipeField(const TSharedPtr<FJsonObject>& Object, const FString& Name)
	{
		for (const TPair<FString, TSharedPtr<FJsonValue>>& Field : Object->Values)
		{
			if (Field.Key.Equals(Name, ESearchCase::CaseSensitive))
			{
				return Field.Value.IsValid() ? Field.Value : MakeShared<FJsonValueNull>();
			}
		}
		return nullptr;
	}

	// The value the path leads to from a step's result; null when it leads nowhere.
	TSharedPtr<FJsonValue> WalkRecipePath(const TSharedPtr<FJsonObject>& Result, const FRecipeReference& Reference)
	{
		if (!Result.IsValid())
		{
			return nullptr;
		}
		TSharedPtr<FJsonValue> Current = MakeShared<FJsonValueObject>(Result);
		if (!Reference.bHasPath)
		{
			return Current;
		}
		TArray<FString> Segments;
		Reference.Path.ParseIntoArray(Segments, TEXT("."), false);
		for (const FString& Segment : Segments)
		{
			if (Current->Type == EJson::Object)
			{
				const TSharedPtr<FJsonObject>& Object = Current->AsObject();
				Current = Object.IsValid() ? FindRecipeField(Object, Segment) : nullptr;
			}
			else if (Current->Type == EJson::Array && IsRecipeArrayIndex(Segment))
			{
				const TArray<TSharedPtr<FJsonValue>>& Items = Current->AsArray();
				// Counted up only as far as the end, so no number of digits overflows.
				int32 Index = 0;
				for (const TCHAR Digit : Segment)
				{
					Index = FMath::Min(Index * 10 + (Digit - TEXT('0')), Items.Num());
				}
				Current = Items.IsValidIndex(Index) && Items[Index].IsValid() ? Items[Index] : nullptr;
			}
			else
			{
				Current = nullptr;
			}
			if (!Current.IsValid())
			{
				return nullptr;
			}
		}
		return Current;
	}

	// The text a template inserts: a string's own text, null as "null", anything else as
	// condensed JSON (numbers as the JSON writer writes them, so 5 and not 5.0).
	FString RecipeValueText(const TSharedPtr<FJsonValue>& Value)
	{
		if (Value->Type == EJson::String)
		{
			return Value->AsString();
		}
		if (Value->IsNull())
		{
			return TEXT("null");
		}
		// The writer takes objects and arrays at the top; a one-element array carries any value.
		FString Text;
		const TSharedRef<TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>> Writer = TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Text);
		FJsonSerializer::Serialize(TArray<TSharedPtr<FJsonValue>>{Value}, Writer);
		return Text.Len() >= 2 ? Text.Mid(1, Text.Len() - 2) : Text;
	}

	// Calls Visit for every string value inside Value, depth first in document order; stops at
	// the first false.
	bool VisitRecipeStrings(const TSharedPtr<FJsonValue>& Value, TFunctionRef<bool(const FString&)> Visit)
	{
		if (!Value.IsValid())
		{
			return true;
		}
		switch (Value->Type)
		{
		case EJson::String:
			return Visit(Value->AsString());
		case EJson::Array:
			for (const TSharedPtr<FJsonValue>& Item : Value->AsArray())
			{
				if (!VisitRecipeStrings(Item, Visit))
				{
					return false;
				}
			}
			return true;
		case EJson::Object:
			if (const TSharedPtr<FJsonObject>& Object = Value->AsObject())
			{
				for (const TPair<FString, TSharedPtr<FJsonValue>>& Field : Object->Values)
				{
					if (!VisitRecipeStrings(Field.Value, Visit))
					{
						return false;
					}
				}
			}
			return true;
		default:
			return true;
		}
	}

	// Every reference in the step's arguments is well-formed and names an earlier step. Paths
	// cannot be checked before the earlier steps have answered.
	bool CheckRecipeReferences(const TArray<ZorvekMCPBridgeRecipeRunner::FRecipeStep>& Steps, int32 StepIndex, FString& OutError)
	{
		const auto IsEarlierStep = [&Steps, StepIndex](const FString& StepId)
		{
			for (int32 Earlier = 0; Earlier < StepIndex; ++Earlier)
			{
				if (Steps[Earlier].Id.Equals(StepId, ESearchCase::IgnoreCase))
				{
					return true;
				}
			}
			return false;
		};
		return VisitRecipeStrings(MakeShared<FJsonValueObject>(Steps[StepIndex].Arguments), [&](const FString& Text)
		{
			FRecipeString Parsed;
			if (!ParseRecipeString(Text, Parsed, OutError))
			{
				return false;
			}
			for (const FRecipeReference& Reference : Parsed.References)
			{
				if (!IsEarlierStep(Reference.StepId))
				{
					OutError = RecipeUnknownStepMessage(Text, Parsed, Reference);
					return false;
				}
			}
			return true;
		});
	}

	TSharedPtr<FJsonValue> ResolveRecipeValue(const TSharedPtr<FJsonValue>& Value, const ZorvekMCPBridgeRecipeRunner::FRecipeResults& Results, FString& OutError);

	TSharedPtr<FJsonObject> ResolveRecipeObject(const TSharedPtr<FJsonObject>& Object, const ZorvekMCPBridgeRecipeRunner::FRecipeResults& Results, FString& OutError)
	{
		// A fresh object in the same key order: the caller's arguments are left as they were.
		TSharedPtr<FJsonObject> Resolved = MakeShared<FJsonObject>();
		for (const TPair<FString, TSharedPtr<FJsonValue>>& Field : Object->Values)
		{
			TSharedPtr<FJsonValue> Value = ResolveRecipeValue(Field.Value, Results, OutError);
			if (!Value.IsValid())
			{
				return nullptr;
			}
			Resolved->SetField(Field.Key, Value);
		}
		return Resolved;
	}

	TSharedPtr<FJsonValue> ResolveRecipeValue(const TSharedPtr<FJsonValue>& Value, const ZorvekMCPBridgeRecipeRunner::FRecipeResults& Results, FString& OutError)
	{
		if (!Value.IsValid())
		{
			return MakeShared<FJsonValueNull>();
		}
		switch (Value->Type)
		{
		case EJson::String:
		{
			TSharedPtr<FJsonValue> Resolved;
			return ZorvekMCPBridgeRecipeRunner::ResolveString(Value->AsString(), Results, Resolved, OutError) ? Resolved : nullptr;
		}
		case EJson::Array:
		{
			TArray<TSharedPtr<FJsonValue>> Items;
			for (const TSharedPtr<FJsonValue>& Item : Value->AsArray())
			{
				TSharedPtr<FJsonValue> Resolved = ResolveRecipeValue(Item, Results, OutError);
				if (!Resolved.IsValid())
				{
					return nullptr;
				}
				Items.Add(Resolved);
			}
			return MakeShared<FJsonValueArray>(Items);
		}
		case EJson::Object:
		{
			const TSharedPtr<FJsonObject>& Object = Value->AsObject();
			if (!Object.IsValid())
			{
				return Value;
			}
			TSharedPtr<FJsonObject> Resolved = ResolveRecipeObject(Object, Results, OutError);
			return Resolved.IsValid() ? TSharedPtr<FJsonValue>(MakeShared<FJsonValueObject>(Resolved)) : nullptr;
		}
		default:
			return Value;
		}
	}

	// The text content of a tool result envelope; empty when it has none.
	FString ReadRecipeContentText(const TSharedPtr<FJsonObject>& Envelope)
	{
		const TArray<TSharedPtr<FJsonValue>>* Content = nullptr;
		if (!Envelope->TryGetArrayField(TEXT("content"), Content) || Content->IsEmpty())
		{
			return FString();
		}
		const TSharedPtr<FJsonObject>* Item = nullptr;
		FString Text;
		if ((*Content)[0].IsValid() && (*Content)[0]->TryGetObject(Item) && Item && (*Item).IsValid())
		{
			(*Item)->TryGetStringField(TEXT("text"), Text);
		}
		return Text;
	}

	// The run so far, written into the report in its keys' order at the end.
	struct FRecipeRun
	{
		FString RecipeName;
		int32 StepCount = 0;
		int32 CompletedStepCount = 0;
		TArray<TSharedPtr<FJsonValue>> StepRecords;
		bool bFailed = false;
		int32 FailedStepIndex = 0;
		FString FailedStepId;
		FString FailedToolName;
		FString FailureReason;
		bool bFailedStepMutationUnknown = false;
		FString Error;

		void Fail(int32 StepIndex, const FString& StepId, const FString& ToolName, const FString& InError, const FString& Reason, bool bMutationUnknown)
		{
			bFailed = true;
			FailedStepIndex = StepIndex;
			FailedStepId = StepId;
			FailedToolName = ToolName;
			Error = InError;
			FailureReason = Reason;
			bFailedStepMutationUnknown = bMutationUnknown;
		}

		ZorvekMCPBridgeRecipeRunner::FRecipeOutcome Finish() const
		{
			TSharedPtr<FJsonObject> Report = MakeShared<FJsonObject>();
			Report->SetStringField(TEXT("recipe_name"), RecipeName);
			Report->SetBoolField(TEXT("success"), !bFailed);
			Report->SetNumberField(TEXT("step_count"), StepCount);
			Report->SetNumberField(TEXT("completed_step_count"), CompletedStepCount);
			Report->SetStringField(TEXT("mutation_policy"), ZorvekMCPBridgeRecipeRunner::RecipeMutationPolicy);
			Report->SetArrayField(TEXT("steps"), StepRecords);
			if (bFailed)
			{
				Report->SetNumberField(TEXT("failed_step_index"), FailedStepIndex);
				Report->SetStringField(TEXT("failed_step_id"), FailedStepId);
				Report->SetStringField(TEXT("failed_tool_name"), FailedToolName);
				Report->SetStringField(TEXT("failure_reason"), FailureReason);
				Report->SetBoolField(TEXT("failed_step_mutation_unknown"), bFailedStepMutationUnknown);
				Report->SetStringField(TEXT("error"), Error);
			}
			return {Report, !bFailed};
		}
	};

	TSharedPtr<FJsonObject> MakeRecipeStepRecord(int32 StepIndex, const ZorvekMCPBridgeRecipeRunner::FRecipeStep& Step, const TSharedPtr<FJsonObject>& Arguments, bool bIsError,
		const FString& ContentText, const TSharedPtr<FJsonObject>& StructuredResult)
	{
		TSharedPtr<FJsonObject> Record = MakeShared<FJsonObject>();
		Record->SetNumberField(TEXT("step_index"), StepIndex);
		Record->SetStringField(TEXT("step_id"), Step.Id);
		Record->SetStringField(TEXT("tool_name"), Step.ToolName);
		Record->SetObjectField(TEXT("arguments"), Arguments);
		Record->SetBoolField(TEXT("is_error"), bIsError);
		Record->SetBoolField(TEXT("success"), !bIsError);
		Record->SetStringField(TEXT("content_text"), ContentText);
		if (StructuredResult.IsValid())
		{
			Record->SetObjectField(TEXT("structured_content"), StructuredResult);
		}
		return Record;
	}
}

const TArray<FString>& ZorvekMCPBridgeRecipeRunner::GetRecipeTools()
{
	static const TArray<FString> Tools = {
		TEXT("unreal_resolve_asset"),
		TEXT("unreal_inspect_asset"),
		TEXT("blueprint_create"),
		TEXT("blueprint_create_interface"),
		TEXT("blueprint_add_variable"),
		TEXT("blueprint_add_component"),
		TEXT("blueprint_add_component_motion"),
		TEXT("blueprint_create_function"),
		TEXT("blueprint_create_event_graph"),
		TEXT("blueprint_implement_interface"),
		TEXT("blueprint_add_interface_event"),
		TEXT("blueprint_add_custom_event"),
		TEXT("blueprint_add_comment"),
		TEXT("blueprint_read_graph"),
		TEXT("blueprint_compile"),
		TEXT("blueprint_find_node_spawners"),
		TEXT("blueprint_resolve_node_spawner"),
		TEXT("blueprint_add_node"),
		TEXT("blueprint_set_node_position"),
		TEXT("blueprint_connect_nodes"),
		TEXT("blueprint_add_node_by_search_and_connect"),
		TEXT("blueprint_search_project"),
	};
	return Tools;
}

bool ZorvekMCPBridgeRecipeRunner::IsRecipeTool(const FString& ToolName)
{
	for (const FString& Tool : GetRecipeTools())
	{
		if (Tool.Equals(ToolName, ESearchCase::IgnoreCase))
		{
			return true;
		}
	}
	return false;
}

bool ZorvekMCPBridgeRecipeRunner::ParseRecipe(const TArray<TSharedPtr<FJsonValue>>& StepValues, TArray<FRecipeStep>& OutSteps, FRecipeProblem& OutProblem)
{
	OutSteps.Reset();
	const auto Refuse = [&OutProblem](int32 StepIndex, const FString& StepId, const FString& ToolName, const FString& Message)
	{
		OutProblem.Message = Message;
		OutProblem.StepIndex = StepIndex;
		OutProblem.StepId = StepId;
		OutProblem.ToolName = ToolName;
		return false;
	};

	if (StepValues.Num() > MaxRecipeSteps)
	{
		return Refuse(0, FString(), FString(), FString::Printf(TEXT("Recipe has %d steps; at most %d are allowed."), StepValues.Num(), MaxRecipeSteps));
	}

	// Each check runs over the whole recipe before the next one, so the first kind of problem
	// wins over a later kind at an earlier step.
	TArray<TSharedPtr<FJsonObject>> StepObjects;
	for (int32 Index = 0; Index < StepValues.Num(); ++Index)
	{
		const TSharedPtr<FJsonObject>* StepObject = nullptr;
		if (!StepValues[Index].IsValid() || StepValues[Index]->Type != EJson::Object || !StepValues[Index]->TryGetObject(StepObject) || !StepObject || !(*StepObject).IsValid())
		{
			return Refuse(Index + 1, FString::Printf(TEXT("Step%d"), Index + 1), FString(), FString::Printf(TEXT("Recipe step %d must be an object."), Index + 1));
		}
		StepObjects.Add(*StepObject);
	}

	TArray<TSharedPtr<FJsonValue>> RawArguments;
	for (int32 Index = 0; Index < StepObjects.Num(); ++Index)
	{
		const TSharedPtr<FJsonObject>& StepObject = StepObjects[Index];
		FRecipeStep Step;
		// Numbers count as their text; an id that is no text at all is no id.
		Step.Id = ZorvekMCPBridgeToolArguments::ReadString(StepObject, TEXT("Id"), FString::Printf(TEXT("Step%d"), Index + 1));
		// ToolName wins; Name is its alias.
		Step.ToolName = ZorvekMCPBridgeToolArguments::ReadString(StepObject, TEXT("ToolName"), ZorvekMCPBridgeToolArguments::ReadString(StepObject, TEXT("Name"), FString()));
		OutSteps.Add(Step);
		RawArguments.Add(StepObject->TryGetField(TEXT("Arguments")));
	}

	for (int32 Index = 0; Index < OutSteps.Num(); ++Index)
	{
		if (OutSteps[Index].Id.IsEmpty())
		{
			return Refuse(Index + 1, FString(), OutSteps[Index].ToolName, FString::Printf(TEXT("Recipe step %d has an empty Id."), Index + 1));
		}
	}

	for (int32 Index = 0; Index < OutSteps.Num(); ++Index)
	{
		for (int32 Earlier = 0; Earlier < Index; ++Earlier)
		{
			if (OutSteps[Earlier].Id.Equals(OutSteps[Index].Id, ESearchCase::IgnoreCase))
			{
				return Refuse(Index + 1, OutSteps[Index].Id, OutSteps[Index].ToolName, FString::Printf(TEXT("Duplicate recipe step Id: %s"), *OutSteps[Index].Id));
			}
		}
	}

	for (int32 Index = 0; Index < OutSteps.Num(); ++Index)
	{
		if (!IsRecipeTool(OutSteps[Index].ToolName))
		{
			return Refuse(Index + 1, OutSteps[Index].Id, OutSteps[Index].ToolName,
				FString::Printf(TEXT("Unsupported recipe tool '%s' at step '%s'."), *OutSteps[Index].ToolName, *OutSteps[Index].Id));
		}
	}

	for (int32 Index = 0; Index < OutSteps.Num(); ++Index)
	{
		// Absent and null mean no arguments.
		const TSharedPtr<FJsonValue>& Arguments = RawArguments[Index];
		const TSharedPtr<FJsonObject>* ArgumentsObject = nullptr;
		if (!Arguments.IsValid() || Arguments->IsNull())
		{
			OutSteps[Index].Arguments = MakeShared<FJsonObject>();
		}
		else if (Arguments->Type == EJson::Object && Arguments->TryGetObject(ArgumentsObject) && ArgumentsObject && (*ArgumentsObject).IsValid())
		{
			OutSteps[Index].Arguments = *ArgumentsObject;
		}
		else
		{
			return Refuse(Index + 1, OutSteps[Index].Id, OutSteps[Index].ToolName, FString::Printf(TEXT("Recipe step %d has Arguments that are not an object."), Index + 1));
		}
	}

	for (int32 Index = 0; Index < OutSteps.Num(); ++Index)
	{
		FString Error;
		if (!CheckRecipeReferences(OutSteps, Index, Error))
		{
			return Refuse(Index + 1, OutSteps[Index].Id, OutSteps[Index].ToolName, Error);
		}
	}
	return true;
}

void ZorvekMCPBridgeRecipeRunner::FRecipeResults::Add(const FString& StepId, const TSharedPtr<FJsonObject>& StructuredResult)
{
	ResultsByLowerId.Add(StepId.ToLower(), StructuredResult);
}

bool ZorvekMCPBridgeRecipeRunner::FRecipeResults::Contains(const FString& StepId) const
{
	return ResultsByLowerId.Contains(StepId.ToLower());
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeRecipeRunner::FRecipeResults::Find(const FString& StepId) const
{
	const TSharedPtr<FJsonObject>* Result = ResultsByLowerId.Find(StepId.ToLower());
	return Result ? *Result : nullptr;
}

bool ZorvekMCPBridgeRecipeRunner::ResolveString(const FString& Text, const FRecipeResults& Results, TSharedPtr<FJsonValue>& OutValue, FString& OutError)
{
	FRecipeString Parsed;
	if (!ParseRecipeString(Text, Parsed, OutError))
	{
		return false;
	}
	if (Parsed.Form == ERecipeStringForm::Plain)
	{
		OutValue = MakeShared<FJsonValueString>(Text);
		return true;
	}

	TArray<TSharedPtr<FJsonValue>> Values;
	for (const FRecipeReference& Reference : Parsed.References)
	{
		if (!Results.Contains(Reference.StepId))
		{
			OutError = RecipeUnknownStepMessage(Text, Parsed, Reference);
			return false;
		}
		TSharedPtr<FJsonValue> Value = WalkRecipePath(Results.Find(Reference.StepId), Reference);
		if (!Value.IsValid())
		{
			OutError = RecipeMissingPathMessage(Text, Parsed, Reference);
			return false;
		}
		Values.Add(Value);
	}

	if (Parsed.Form == ERecipeStringForm::WholeValue)
	{
		OutValue = Values[0];
		return true;
	}
	FString Filled = Parsed.Literals[0];
	for (int32 Index = 0; Index < Values.Num(); ++Index)
	{
		Filled += RecipeValueText(Values[Index]);
		Filled += Parsed.Literals[Index + 1];
	}
	OutValue = MakeShared<FJsonValueString>(Filled);
	return true;
}

bool ZorvekMCPBridgeRecipeRunner::ResolveArguments(const TSharedPtr<FJsonObject>& Arguments, const FRecipeResults& Results, TSharedPtr<FJsonObject>& OutResolved, FString& OutError)
{
	OutResolved = ResolveRecipeObject(Arguments.IsValid() ? Arguments : MakeShared<FJsonObject>(), Results, OutError);
	return OutResolved.IsValid();
}

ZorvekMCPBridgeRecipeRunner::FRecipeOutcome ZorvekMCPBridgeRecipeRunner::RunRecipe(const FString& RecipeName, const TArray<TSharedPtr<FJsonValue>>& StepValues, FRecipeToolCall CallTool)
{
	FRecipeRun Run;
	Run.RecipeName = RecipeName;
	Run.StepCount = StepValues.Num();

	TArray<FRecipeStep> Steps;
	FRecipeProblem Problem;
	if (!ParseRecipe(StepValues, Steps, Problem))
	{
		// Nothing ran, so nothing can have changed.
		Run.Fail(Problem.StepIndex, Problem.StepId, Problem.ToolName, Problem.Message, Problem.Message, false);
		return Run.Finish();
	}

	FRecipeResults Results;
	for (int32 Index = 0; Index < Steps.Num(); ++Index)
	{
		const FRecipeStep& Step = Steps[Index];
		const int32 StepNumber = Index + 1;

		TSharedPtr<FJsonObject> Arguments;
		FString ResolveError;
		if (!ResolveArguments(Step.Arguments, Results, Arguments, ResolveError))
		{
			// The tool was not called: this step changed nothing.
			Run.Fail(StepNumber, Step.Id, Step.ToolName, FString::Printf(TEXT("Could not resolve arguments for recipe step '%s'."), *Step.Id), ResolveError, false);
			return Run.Finish();
		}

		const TSharedPtr<FJsonObject> Envelope = CallTool(Step.ToolName, Arguments);
		if (!Envelope.IsValid())
		{
			const FString Message = FString::Printf(TEXT("Recipe tool '%s' returned no result at step '%s'."), *Step.ToolName, *Step.Id);
			Run.StepRecords.Add(MakeShared<FJsonValueObject>(MakeRecipeStepRecord(StepNumber, Step, Arguments, true, FString(), nullptr)));
			Run.Fail(StepNumber, Step.Id, Step.ToolName, Message, Message, true);
			return Run.Finish();
		}

		bool bIsError = false;
		Envelope->TryGetBoolField(TEXT("isError"), bIsError);
		const TSharedPtr<FJsonObject>* Structured = nullptr;
		const TSharedPtr<FJsonObject> StructuredResult = Envelope->TryGetObjectField(TEXT("structuredContent"), Structured) && Structured ? *Structured : nullptr;
		const FString ContentText = ReadRecipeContentText(Envelope);
		Run.StepRecords.Add(MakeShared<FJsonValueObject>(MakeRecipeStepRecord(StepNumber, Step, Arguments, bIsError, ContentText, StructuredResult)));
		if (bIsError)
		{
			// A tool may have changed the asset before it failed.
			Run.Fail(StepNumber, Step.Id, Step.ToolName, FString::Printf(TEXT("Recipe step '%s' failed."), *Step.Id), ContentText, true);
			return Run.Finish();
		}
		Results.Add(Step.Id, StructuredResult);
		++Run.CompletedStepCount;
	}
	return Run.Finish();
}
