"""Drives the player as a person would and says what was to be seen and heard."""
