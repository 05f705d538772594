' Packed dates and times, facts of the calendar, Easter, late bound.
Dim packed, integers, i, day

Check "Date_Set of 31 December 2043", Date_Set(31, 12, 2043), CInt(32671)
packed = Date_Set(1, 1, 2044)
Check "Date_Set of 1 January 2044 is negative", packed, CInt(-32735)
Check "its day reads as packed", Date_2_Day(packed), CInt(1)
Check "its month reads one too high", Date_2_Month(packed), CInt(2)
Check "its year reads one too high", Date_2_Year(packed), CInt(2045)
packed = Date_Set(1, 1, 1980)
Check "Date_Set of the first day", packed, CInt(33)
Check "its month", Date_2_Month(packed), CInt(1)
Check "its year", Date_2_Year(packed), CInt(1980)
Check "a day of 40 spills into the month", Date_Set(40, 1, 1980), CInt(72)
Check "a year before 1980 keeps its small negative sum", Date_Set(1, 1, 1979), CInt(-479)
On Error Resume Next
packed = Date_Set(1, 1, 2108)
CheckError "Date_Set of 2108 does not fit", 6, "Overflow"
packed = Date_Set("x", 1, 2000)
CheckError "Date_Set of a day that is no number", 13, ""
On Error GoTo 0

packed = 12 * 2048 + 30 * 32 + 29
Check "Time_2_Hour", Time_2_Hour(packed), CInt(12)
Check "Time_2_Minute", Time_2_Minute(packed), CInt(30)
Check "Time_2_Second of 12:30:58 gives units of two seconds", Time_2_Second(packed), CInt(29)
packed = CInt(-32768 + 7 * 2048 + 59 * 32)
Check "Time_2_Hour of a negative Integer", Time_2_Hour(packed), CInt(23)
Check "Time_2_Minute of a negative Integer", Time_2_Minute(packed), CInt(59)
Check "Time_2_Hour of -32768", Time_2_Hour(CInt(-32768)), CInt(16)

Check "Leap_Year of 1900", Leap_Year(1900), CInt(0)
Check "Leap_Year of 2000", Leap_Year(2000), CInt(-1)
Check "Leap_Year of 2024", Leap_Year(2024), CInt(-1)
Check "Leap_Year of 2023", Leap_Year(2023), CInt(0)
Check "Get_Year_Days of 2024", Get_Year_Days(2024), CInt(366)
Check "Get_Year_Days of 1900", Get_Year_Days(1900), CInt(365)
Check "Get_Month_Days of February 2024", Get_Month_Days(2024, 2), CInt(29)
Check "Get_Month_Days of February 2023", Get_Month_Days(2023, 2), CInt(28)
On Error Resume Next
i = Get_Month_Days(2024, 13)
CheckError "Get_Month_Days of month 13", 94, "Invalid use of Null"
i = Get_Month_Name(13)
CheckError "Get_Month_Name of month 13", 5, "Invalid procedure call or argument"
i = Get_Day_Name(0)
CheckError "Get_Day_Name of day 0", 5, ""
i = Get_Day_Name(8)
CheckError "Get_Day_Name of day 8", 5, ""
On Error GoTo 0

Check "Easter_Day of 2024", Easter_Day(2024), DateSerial(2024, 3, 31)
Check "Easter_Day of 2025", Easter_Day(2025), DateSerial(2025, 4, 20)
Check "Easter_Day of 2026", Easter_Day(2026), DateSerial(2026, 4, 5)
Check "Easter_Day of 2000", Easter_Day(2000), DateSerial(2000, 4, 23)
Check "Easter_Day of 2038, the latest", Easter_Day(2038), DateSerial(2038, 4, 25)
Check "Easter_Day of 1954", Easter_Day(1954), DateSerial(1954, 4, 18)
On Error Resume Next
day = Easter_Day(40000)
CheckError "Easter_Day of a year beyond an Integer", 6, "Overflow"
On Error GoTo 0
Check "none of these touched the error state", Check_Error(), False
Finish
