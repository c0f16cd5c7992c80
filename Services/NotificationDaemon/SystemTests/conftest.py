from tinkra_world.fixtures import world  # noqa: F401
