"""The reference pages, made from the interface description, the examples and the guides."""
