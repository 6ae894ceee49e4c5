// What a template author should know of the options for DATETIME, whatever the value: see text/Finding.h.
//
//   unlikely           a pattern whose letters are easily mixed up: "mm" for months, "DD", "YYYY"; letters that mean
//                      nothing; no pattern at all
//   option-value       a pattern too long to be used
//   unknown-zone       "Europe/Berln": UTC is taken
//   unknown-language   "dee": the language of the process is taken
//
//   {CustomDateTimeFormat = dd.mm.YYYY}    // unlikely; the suggestion is dd.MM.yyyy
//
// Options that are not used, as the language of a date in ISO8601, are not looked at; nor are the words of
// "InputDateTimeFormat" and "DateTimeFormat". What depends on a value is FormatDateTimeValue's to say. Any thread.
#pragma once

#include "NQ_TDict.h"
#include "text/Finding.h"

namespace templatenames {

void CheckDateOptions(const NQ_TDict& options, TFindings& findings);

}  // namespace templatenames
