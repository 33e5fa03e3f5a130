"""Runs the program kvr over many scenes and models, on the engine of Dask distributed."""
