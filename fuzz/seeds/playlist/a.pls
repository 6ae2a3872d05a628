[playlist]
File1=/a/b.mp3
Title1=x
Length1=3
file2=c.mp3
NumberOfEntries=2

Version=2