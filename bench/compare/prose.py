"""What the document says around its tables."""

HEAD = """# Tidewell beside other monitors

Written by `bench/compare/measure` from what it measured (`bench/compare/results.json`).

"""

HOW = """
## How

A machine of the test world (`tests/world`) on a link of 20 Mbit/s down and 6 up. 1,234,000 bytes a
second come down and 345,000 go up, Ethernet headers included, from a sender that keeps such a rate
exactly; while costs are measured 555,000 more come down in every other second, so that whatever shows
a rate has to show another one. Every program runs alone with its desktop, on a virtual screen, for
{settle} seconds before it is watched for {seconds}, in {windows} windows.

- **CPU**: percent of one processor, by the kernel's account of a control group that holds the program
  and everything that it starts, those that have ended, too. Mean, and least and most of the windows.
  Neither the display server's nor the bus daemon's share is in anybody's figure.
- **wake-ups**: voluntary sleeps a second of all threads of the processes that live all the time.
- **PSS, private**: their proportional memory, and what they alone have written.
- **rate error**: of the rates shown while the traffic is constant, both directions, from the
  sender's; mean and worst. For Tidewell in the panel it is the text; for the resident the number on
  the bus. nethogs counts without Ethernet headers, 14 bytes of 1,000 here, which explains 1.4 %; what
  else it reads low at a constant rate is not explained here. For vnstat it is the answer of
  `vnstat -tr`. What is drawn only no program can read: polybar prints its text instead of drawing it
  in a second run; for gkrellm, btop, gnome-system-monitor and the plugins there is no such way.
- Plugins of a panel are the panel with them less the panel without; so is what the panel spends on
  Tidewell's item. The least and the most of such a difference are what the windows leave open.
- *Rates alone* is Tidewell with ping hidden from it and programs and notices switched off; *as
  installed* has every default. Both sample once a second, like the others; the default is every
  two seconds (see the curve).

"""

TAIL = """
## Again

```sh
sudo scripts/installPackages build run desktop desktops world bench
scripts/buildPreset release tidewell tidewell_nettop tidewell_publicAddress tidewell_notificationSound \\
  sender talker
sudo bench/compare/measure all           # half an hour, on a machine that does nothing else
sudo bench/compare/measure --seconds 20 conky "growth intervals"
bench/compare/measure table
```
"""
