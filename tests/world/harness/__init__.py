"""What the tests of this folder share. Python's standard library only."""
