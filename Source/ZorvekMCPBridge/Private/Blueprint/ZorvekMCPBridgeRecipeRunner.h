// The recipe runner behind blueprint_run_recipe: an ordered list of tool calls, checked as a whole
// before the first one runs, then run one after the other through a tool-call function. Later
// calls take values out of the structured results of earlier ones through references:
//
//   "$Create.asset_path"            the whole string becomes the referenced JSON value, type kept
//   "Graph of ${Create.asset_path}" each ${...} is replaced by the text of the referenced value
//
// A reference names a step by id (without regard to case) and walks a path of "."-separated
// segments from that step's structured result: on an object a segment is a field name (matched
// exactly), on an array a segment of decimal digits is an index. A reference without a path
// ("$Create") is the step's whole structured result.
//
// The run stops at the first failing step and undoes nothing: the steps that ran stay applied.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Templates/Function.h"

namespace ZorvekMCPBridgeRecipeRunner
{
	// More steps than this are refused before anything else is looked at.
	constexpr int32 MaxRecipeSteps = 100;

	// The report's "mutation_policy": steps run in order and nothing is rolled back.
	extern const TCHAR* const RecipeMutationPolicy;

	// The tools a step may call, in catalogue spelling.
	const TArray<FString>& GetRecipeTools();

	// True when a step may call the tool; names match without regard to case, as dispatch does.
	bool IsRecipeTool(const FString& ToolName);

	struct FRecipeStep
	{
		// The id given, or "Step<n>" with the 1-based step number.
		FString Id;
		// As written in the step (ToolName, else its alias Name).
		FString ToolName;
		// Never null: an absent Arguments is an empty object.
		TSharedPtr<FJsonObject> Arguments;
	};

	// Why a recipe was refused before anything ran, and the step it concerns.
	struct FRecipeProblem
	{
		FString Message;
		// 1-based; 0 when the problem is the recipe as a whole (too many steps).
		int32 StepIndex = 0;
		FString StepId;
		FString ToolName;
	};

	// Reads the step objects and checks the whole recipe: the number of steps, then, each over
	// every step in turn, steps that are not objects, empty ids, ids used twice, tools outside
	// the list, Arguments that are not objects, and finally every reference, which must be
	// well-formed and name an earlier step. False with the first problem found.
	bool ParseRecipe(const TArray<TSharedPtr<FJsonValue>>& StepValues, TArray<FRecipeStep>& OutSteps, FRecipeProblem& OutProblem);

	// The structured results of the steps run so far, by id without regard to case. A step that
	// answered with text only is known but has no result to read from.
	class FRecipeResults
	{
	public:
		void Add(const FString& StepId, const TSharedPtr<FJsonObject>& StructuredResult);
		bool Contains(const FString& StepId) const;
		// Null for an unknown step and for a step without a structured result.
		TSharedPtr<FJsonObject> Find(const FString& StepId) const;

	private:
		TMap<FString, TSharedPtr<FJsonObject>> ResultsByLowerId;
	};

	// A copy of Arguments with every string value (in nested objects and arrays too) substituted.
	// False with the resolver's message when a reference does not resolve.
	bool ResolveArguments(const TSharedPtr<FJsonObject>& Arguments, const FRecipeResults& Results, TSharedPtr<FJsonObject>& OutResolved, FString& OutError);

	// One string value substituted: itself, the referenced value, or the filled-in template.
	bool ResolveString(const FString& Text, const FRecipeResults& Results, TSharedPtr<FJsonValue>& OutValue, FString& OutError);

	// Calls one tool and returns its result envelope ("content", "isError", "structuredContent"),
	// or null when no tool answered.
	typedef TFunctionRef<TSharedPtr<FJsonObject>(const FString& ToolName, const TSharedPtr<FJsonObject>& Arguments)> FRecipeToolCall;

	struct FRecipeOutcome
	{
		TSharedPtr<FJsonObject> Report;
		bool bSucceeded = false;
	};

	// Validates the recipe, then runs its steps through CallTool until one fails. The report
	// holds recipe_name, success, step_count, completed_step_count, mutation_policy and steps;
	// on failure also failed_step_index, failed_step_id, failed_tool_name, failure_reason,
	// failed_step_mutation_unknown and error.
	FRecipeOutcome RunRecipe(const FString& RecipeName, const TArray<TSharedPtr<FJsonValue>>& StepValues, FRecipeToolCall CallTool);
}
